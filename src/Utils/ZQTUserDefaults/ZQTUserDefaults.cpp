#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"

#include "platform/foundation/Log.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaults.h"

#include <cmath>
#include <functional>
#include <limits>

namespace {

const QString kClaimList = QStringLiteral("ClaimList");

ZQTPlatform::UserDefaults &store()
{
    return ZQTPlatform::UserDefaults::standardUserDefaults();
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

// Changes one claim's dictionary inside "ClaimList" as one update of the store, so that it is made
// again on the file's own list when another process wrote it meanwhile. change() gets the claim's
// dictionary and whether the claim exists, and says whether the claim is kept (else removed).
void updateClaim(const QString &claimID, const std::function<bool(QVariantMap &claim, bool exists)> &change)
{
    store().update(kClaimList, [claimID, change](const QVariant &list) {
        QVariantMap claims = list.toMap();
        QVariantMap claim = claims.value(claimID).toMap();
        if (change(claim, claims.contains(claimID)))
            claims.insert(claimID, claim);
        else
            claims.remove(claimID);
        return claims.isEmpty() && !list.isValid() ? QVariant() : QVariant(claims);
    });
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
    updateClaim(claimID, [key, object](QVariantMap &claim, bool) {
        if (object.isValid())
            claim.insert(key, object);
        else
            claim.remove(key);
        return true;
    });
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
    if (!getDictionaryForClaim(claimID).contains(key))
        return;
    // A claim another process cleared meanwhile stays cleared.
    updateClaim(claimID, [key](QVariantMap &claim, bool exists) { return claim.remove(key) > 0 || exists; });
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
        if (!getAllClaimsDictionary().contains(claimID))
            return;
        updateClaim(claimID, [](QVariantMap &, bool) { return false; });
    }
    store().synchronize();
}
