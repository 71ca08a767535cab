// The contact details of a claim's adjuster, handed to the capture screen by the host.
// Every field may be absent (a null QString).
#pragma once

#include <QString>

class ZQTVINScanAdjuster
{
public:
    QString custClmRefID() const { return m_custClmRefID; }
    void setCustClmRefID(const QString &value) { m_custClmRefID = value; }
    QString userType() const { return m_userType; }
    void setUserType(const QString &value) { m_userType = value; }
    QString recipientName() const { return m_recipientName; }
    void setRecipientName(const QString &value) { m_recipientName = value; }
    QString recipientEmailAddress() const { return m_recipientEmailAddress; }
    void setRecipientEmailAddress(const QString &value) { m_recipientEmailAddress = value; }
    QString recipientPhone() const { return m_recipientPhone; }
    void setRecipientPhone(const QString &value) { m_recipientPhone = value; }

private:
    QString m_custClmRefID;
    QString m_userType;
    QString m_recipientName;
    QString m_recipientEmailAddress;
    QString m_recipientPhone;
};
