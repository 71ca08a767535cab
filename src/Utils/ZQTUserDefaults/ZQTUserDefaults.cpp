#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"

#include "platform/foundation/Log.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaults.h"

#include <QMutex>

#include <cmath>
#include <limits>

namespace {

const QString kClaimList = QStringLiteral("ClaimList");

ZQTPlatform::UserDefaults &store()
{
    return ZQTPlatform::UserDefaults::standardUserDefaults();
}

// Held across every read-modify-write of "ClaimList".
QMutex &claimListMutex()
{
    static QMutex mutex;
    return mutex;
}

// A stored number's integer value as the platform gives it: a fraction is dropped (2.75 gives 2,
// -2.75 gives -2), never rounded; a value beyond the word's range gives its nearest end, and
// anything that is not a number converts as QVariant converts it (0 when it cannot).
qintptr integerValue(const QVariant &value)
{
    const int type = value.typeId();
    if (type != QMetaType::Double && type != QMetaType::Float)
        return qintptr(value.toLongLong());
    const double number = value.toDouble();
    if (std::isnan(number))
        return 0;
    constexpr double lowest = double(std::numeric_limits<qintptr>::min());
    constexpr double beyondHighest = -lowest; // 2^63 (or 2^31): the first value past the top
    if (number <= lowest)
        return std::numeric_limits<qintptr>::min();
    if (number >= beyondHighest)
        return std::numeric_limits<qintptr>::max();
    return qintptr(std::trunc(number));
}

void writeClaimList(const QVariantMap &claims)
{
    store().setObject(claims, kClaimList);
}

} // namespace

// Top level

void ZQTUserDefaults::setObject(const QVariant &object, const QString &key)
{
    store().setObject(object, key);
    store().synchronize();
}

QVariant ZQTUserDefaults::objectForKey(const QString &key)
{
    return store().objectForKey(key);
}

void ZQTUserDefaults::setInteger(qintptr value, const QString &key)
{
    setObject(qint64(value), key);
}

qintptr ZQTUserDefaults::integerForKey(const QString &key)
{
    return integerValue(objectForKey(key));
}

void ZQTUserDefaults::setFloat(float value, const QString &key)
{
    setObject(value, key);
}

float ZQTUserDefaults::floatForKey(const QString &key)
{
    return objectForKey(key).toFloat();
}

void ZQTUserDefaults::setDouble(double value, const QString &key)
{
    setObject(value, key);
}

double ZQTUserDefaults::doubleForKey(const QString &key)
{
    return objectForKey(key).toDouble();
}

void ZQTUserDefaults::setBool(bool value, const QString &key)
{
    setObject(value, key);
}

bool ZQTUserDefaults::boolForKey(const QString &key)
{
    return objectForKey(key).toBool();
}

bool ZQTUserDefaults::removeObjectForkey(const QString &key)
{
    store().removeObjectForKey(key);
    store().synchronize();
    return true;
}

// Scoped to a claim

void ZQTUserDefaults::setObjectForKeyWithClaimID(const QVariant &object, const QString &key, const QString &claimID)
{
    if (claimID.isNull()) {
        setObject(object, key);
        return;
    }
    // Checked here, before the claim is touched, so that the log names the key and the claim; the
    // claim id becomes a key of "ClaimList" and is checked as one.
    QString refusal = ZQTPlatform::UserDefaults::refusalReason(object, key);
    if (refusal.isEmpty() && object.isValid())
        ZQTPlatform::PropertyList::isPropertyListText(claimID, &refusal);
    if (!refusal.isEmpty()) {
        ZQTPlatform::log(QStringLiteral("ZQTUserDefaults: refused to store a value of type %1 for key \"%2\" of "
                                        "claim \"%3\": %4")
                             .arg(QString::fromLatin1(object.typeName()), key, claimID, refusal));
        return;
    }
    {
        QMutexLocker lock(&claimListMutex());
        QVariantMap claims = getAllClaimsDictionary();
        QVariantMap claim = getDictionaryForClaim(claimID);
        if (object.isValid())
            claim.insert(key, object);
        else
            claim.remove(key);
        claims.insert(claimID, claim);
        writeClaimList(claims);
    }
    store().synchronize();
}

QVariant ZQTUserDefaults::getObjectForKey(const QString &key, const QString &claimID)
{
    if (claimID.isNull())
        return objectForKey(key);
    return getDictionaryForClaim(claimID).value(key);
}

void ZQTUserDefaults::removeObjectForKeyWithClaimID(const QString &key, const QString &claimID)
{
    if (claimID.isNull()) {
        removeObjectForkey(key);
        return;
    }
    {
        QMutexLocker lock(&claimListMutex());
        QVariantMap claim = getDictionaryForClaim(claimID);
        if (!claim.contains(key))
            return;
        claim.remove(key);
        QVariantMap claims = getAllClaimsDictionary();
        claims.insert(claimID, claim);
        writeClaimList(claims);
    }
    store().synchronize();
}

void ZQTUserDefaults::setObject(const QVariant &object, const QString &key, const QString &claimID)
{
    setObjectForKeyWithClaimID(object, key, claimID);
}

QVariant ZQTUserDefaults::objectForKey(const QString &key, const QString &claimID)
{
    return getObjectForKey(key, claimID);
}

void ZQTUserDefaults::removeObjectForKey(const QString &key, const QString &claimID)
{
    removeObjectForKeyWithClaimID(key, claimID);
}

void ZQTUserDefaults::setInteger(qintptr value, const QString &key, const QString &claimID)
{
    setObjectForKeyWithClaimID(qint64(value), key, claimID);
}

void ZQTUserDefaults::setFloat(float value, const QString &key, const QString &claimID)
{
    setObjectForKeyWithClaimID(value, key, claimID);
}

void ZQTUserDefaults::setDouble(double value, const QString &key, const QString &claimID)
{
    setObjectForKeyWithClaimID(value, key, claimID);
}

void ZQTUserDefaults::setBool(bool value, const QString &key, const QString &claimID)
{
    setObjectForKeyWithClaimID(value, key, claimID);
}

qintptr ZQTUserDefaults::integerForKey(const QString &key, const QString &claimID)
{
    return integerValue(getObjectForKey(key, claimID));
}

float ZQTUserDefaults::floatForKey(const QString &key, const QString &claimID)
{
    return getObjectForKey(key, claimID).toFloat();
}

double ZQTUserDefaults::doubleForKey(const QString &key, const QString &claimID)
{
    return getObjectForKey(key, claimID).toDouble();
}

bool ZQTUserDefaults::boolForKey(const QString &key, const QString &claimID)
{
    return getObjectForKey(key, claimID).toBool();
}

QVariantMap ZQTUserDefaults::getAllClaimsDictionary()
{
    return store().objectForKey(kClaimList).toMap();
}

QVariantMap ZQTUserDefaults::getDictionaryForClaim(const QString &claimID)
{
    return getAllClaimsDictionary().value(claimID).toMap();
}

void ZQTUserDefaults::clearUserDefaultsForClaimID(const QString &claimID)
{
    if (claimID.isNull()) {
        store().removeObjectForKey(claimID); // a nil key, which removes nothing
    } else {
        QMutexLocker lock(&claimListMutex());
        QVariantMap claims = getAllClaimsDictionary();
        if (claims.remove(claimID) == 0)
            return;
        writeClaimList(claims);
    }
    store().synchronize();
}
