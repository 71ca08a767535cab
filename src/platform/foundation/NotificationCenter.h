// A thread-safe notification centre: observers register by name, posting is synchronous on
// the caller's thread.
#pragma once

#include "ZQTGlobal.h"

#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

namespace ZQTPlatform {

struct Notification
{
    QString name;
    QVariant object;      // what the poster passed as the notification's object
    QVariantMap userInfo; // empty when the poster gave none
};

class ZQT_EXPORT NotificationCenter
{
public:
    using Handler = std::function<void(const Notification &)>;

    static NotificationCenter &defaultCenter();

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;

    // Calls handler for every notification of that name (an empty name observes all) until the
    // observer is removed. observer only identifies the registration.
    void addObserver(const void *observer, const QString &name, Handler handler);
    // Removes the observer's registrations for that name, or all of them when name is empty.
    void removeObserver(const void *observer, const QString &name = QString());
    // Calls every matching handler now, on this thread, in the order they were added.
    // Handlers may add or remove observers while being called.
    void postNotificationName(const QString &name, const QVariant &object = QVariant(),
                              const QVariantMap &userInfo = QVariantMap());

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
