// The form loader of scenes: Qt's loader, plus the widget classes registered with Storyboard.
#pragma once

#include "platform/ui/Storyboard.h"

#include <QHash>
#include <QUiLoader>

namespace ZQTPlatform {

class SceneLoader : public QUiLoader
{
public:
    using QUiLoader::QUiLoader;

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override;

    // The registered widget classes (the component's own, such as NavigationBar, from the start).
    static QHash<QString, Storyboard::WidgetFactory> &widgetClasses();
};

} // namespace ZQTPlatform
