// Per-claim settings: typed get and set on the top level of the application's standard
// preferences store, and the same operations scoped to one claim, which keep the values of all
// claims in one top-level dictionary "ClaimList" (claim id -> that claim's dictionary).
// Every write is followed at once by a flush of the store to its file.
//
// "nil" in C++: a nil value is an invalid QVariant (QVariant()); a nil claim id is a null
// QString (QString()), whereas an empty but non-null QString is an ordinary claim id. Absent
// values read as an invalid QVariant, 0 or false.
//
// Values must be property-list types (see ZQTPlatform::PropertyList); anything else is refused
// with a log line and not stored. Integers, floats, doubles and booleans are stored as numbers.
//
// Safe to call from any thread: each scoped write or removal is one update of "ClaimList" in the
// store (ZQTPlatform::UserDefaults::update), made again on the file's own list when another
// process wrote it meanwhile, so concurrent writers, in this process or others, lose no update.
#pragma once

#include "ZQTGlobal.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

class ZQT_EXPORT ZQTUserDefaults
{
public:
    ZQTUserDefaults() = delete;

    // Top level of the store.
    static void setObject(const QVariant &object, const QString &key); // a nil object removes the key
    static QVariant objectForKey(const QString &key);
    // A signed integer of the platform's word size.
    static void setInteger(qintptr value, const QString &key);
    static qintptr integerForKey(const QString &key);
    static void setFloat(float value, const QString &key);
    static float floatForKey(const QString &key);
    static void setDouble(double value, const QString &key);
    static double doubleForKey(const QString &key);
    static void setBool(bool value, const QString &key);
    static bool boolForKey(const QString &key);
    // Removes the key and flushes; always true.
    static bool removeObjectForkey(const QString &key);

    // Scoped to a claim; a nil claim id acts on the top level instead.
    // The core write: sets the value in the claim's dictionary (a nil value removes the key but
    // keeps the claim, even when it is left empty); the claim is created by its first write.
    static void setObjectForKeyWithClaimID(const QVariant &object, const QString &key, const QString &claimID);
    // The core read; reading never creates a claim.
    static QVariant getObjectForKey(const QString &key, const QString &claimID);
    // The core removal; a key the claim does not hold leaves the store untouched (no write).
    static void removeObjectForKeyWithClaimID(const QString &key, const QString &claimID);

    // The three core operations under their second names.
    static void setObject(const QVariant &object, const QString &key, const QString &claimID);
    static QVariant objectForKey(const QString &key, const QString &claimID);
    static void removeObjectForKey(const QString &key, const QString &claimID);

    // Typed forms of the core write and read: the value is stored as a number; an absent value
    // reads as 0 or false.
    static void setInteger(qintptr value, const QString &key, const QString &claimID);
    static void setFloat(float value, const QString &key, const QString &claimID);
    static void setDouble(double value, const QString &key, const QString &claimID);
    static void setBool(bool value, const QString &key, const QString &claimID);
    static qintptr integerForKey(const QString &key, const QString &claimID);
    static float floatForKey(const QString &key, const QString &claimID);
    static double doubleForKey(const QString &key, const QString &claimID);
    static bool boolForKey(const QString &key, const QString &claimID);

    // A copy of "ClaimList"; empty when there is none.
    static QVariantMap getAllClaimsDictionary();
    // A copy of the claim's dictionary; empty when the claim has none.
    static QVariantMap getDictionaryForClaim(const QString &claimID);
    // Removes the claim's whole entry (other claims stay); with a nil claim id nothing is
    // removed. Never touches the claim's photo files.
    static void clearUserDefaultsForClaimID(const QString &claimID);
};
