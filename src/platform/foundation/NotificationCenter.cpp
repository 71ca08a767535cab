#include "platform/foundation/NotificationCenter.h"

#include <QMutex>

#include <algorithm>

#include <vector>

namespace ZQTPlatform {

struct NotificationCenter::Private
{
    struct Registration
    {
        quint64 id;
        const void *observer;
        QString name;
        std::shared_ptr<const Handler> handler;
    };

    QMutex mutex;
    std::vector<Registration> registrations; // in the order they were added
    quint64 nextId = 1;

    bool isRegistered(quint64 id)
    {
        QMutexLocker lock(&mutex);
        for (const Registration &r : registrations)
            if (r.id == id)
                return true;
        return false;
    }
};

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

NotificationCenter::NotificationCenter() : d(std::make_unique<Private>()) {}

NotificationCenter::~NotificationCenter() = default;

void NotificationCenter::addObserver(const void *observer, const QString &name, Handler handler)
{
    if (!handler)
        return;
    QMutexLocker lock(&d->mutex);
    d->registrations.push_back({d->nextId++, observer, name,
                                std::make_shared<const Handler>(std::move(handler))});
}

void NotificationCenter::removeObserver(const void *observer, const QString &name)
{
    QMutexLocker lock(&d->mutex);
    auto &list = d->registrations;
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&](const Private::Registration &r) {
                                  return r.observer == observer && (name.isEmpty() || r.name == name);
                              }),
               list.end());
}

void NotificationCenter::postNotificationName(const QString &name, const QVariant &object,
                                              const QVariantMap &userInfo)
{
    // The handlers run without the lock held, so they may post, add or remove observers.
    // A registration removed while this post is under way is not called any more; one added
    // meanwhile waits for the next post.
    std::vector<std::pair<quint64, std::shared_ptr<const Handler>>> matching;
    {
        QMutexLocker lock(&d->mutex);
        for (const Private::Registration &r : d->registrations)
            if (r.name.isEmpty() || r.name == name)
                matching.emplace_back(r.id, r.handler);
    }
    const Notification notification{name, object, userInfo};
    for (const auto &[id, handler] : matching)
        if (d->isRegistered(id))
            (*handler)(notification);
}

} // namespace ZQTPlatform
