#include "platform/ui/Storyboard.h"

#include "platform/foundation/Exception.h"
#include "platform/ui/LayoutConstraint.h"
#include "platform/foundation/Log.h"
#include "platform/ui/NavigationBar.h"
#include "platform/ui/Storyboard_p.h"
#include "platform/ui/ViewController.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QVBoxLayout>

namespace ZQTPlatform {

namespace {

constexpr char customClassProperty[] = "customClass";

QHash<QString, Storyboard::ControllerFactory> &controllerClasses()
{
    static QHash<QString, Storyboard::ControllerFactory> classes;
    return classes;
}

[[noreturn]] void raiseInvalidArgument(const QString &reason)
{
    log(reason);
    throw Exception(QStringLiteral("NSInvalidArgumentException"), reason);
}

struct WidgetAttribute
{
    const char *className;
    Storyboard::AttributeSetter setter;
};

QMultiHash<QString, WidgetAttribute> &widgetAttributes()
{
    static QMultiHash<QString, WidgetAttribute> attributes;
    return attributes;
}

void applyWidgetAttributes(QWidget *widget)
{
    for (const QByteArray &name : widget->dynamicPropertyNames()) {
        const QString attribute = QString::fromLatin1(name);
        const auto registered = widgetAttributes().equal_range(attribute);
        for (auto it = registered.first; it != registered.second; ++it) {
            if (!widget->inherits(it->className))
                continue;
            const QString value = widget->property(name.constData()).toString();
            widget->setProperty(name.constData(), QVariant());
            it->setter(widget, value);
            break;
        }
    }
}

void applySceneAttributes(QWidget *root)
{
    applyWidgetAttributes(root);
    for (QWidget *widget : root->findChildren<QWidget *>())
        applyWidgetAttributes(widget);
}

ViewController *makeController(const QString &className)
{
    if (className.isEmpty())
        return new ViewController;
    const auto factory = controllerClasses().constFind(className);
    if (factory == controllerClasses().cend()) {
        log(QStringLiteral("Unknown class %1 in Interface Builder file.").arg(className));
        return new ViewController;
    }
    return (*factory)();
}

} // namespace

QHash<QString, Storyboard::WidgetFactory> &SceneLoader::widgetClasses()
{
    static QHash<QString, Storyboard::WidgetFactory> classes{
        {QStringLiteral("NavigationBar"), [](QWidget *parent) { return new NavigationBar(parent); }},
    };
    return classes;
}

QWidget *SceneLoader::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    const auto factory = widgetClasses().constFind(className);
    if (factory == widgetClasses().cend())
        return QUiLoader::createWidget(className, parent, name);
    QWidget *widget = (*factory)(parent);
    widget->setObjectName(name);
    return widget;
}

Storyboard Storyboard::storyboardWithName(const QString &name, const Bundle &bundle)
{
    if (bundle.isNull() || name.isEmpty())
        return Storyboard();
    const QString path = QDir(bundle.bundlePath()).filePath(name);
    return QFileInfo(path).isDir() ? Storyboard(name, path) : Storyboard();
}

ViewController *Storyboard::instantiateViewControllerWithIdentifier(const QString &identifier) const
{
    QFile scene(QDir(m_path).filePath(identifier + QStringLiteral(".ui")));
    if (isNull() || identifier.isEmpty() || !scene.open(QIODevice::ReadOnly)) {
        raiseInvalidArgument(QStringLiteral("Storyboard (%1) doesn't contain a view controller with identifier '%2'")
                                 .arg(m_name, identifier));
    }
    SceneLoader loader;
    QWidget *root = loader.load(&scene);
    if (!root) {
        raiseInvalidArgument(QStringLiteral("Could not load the scene '%1' of storyboard (%2): %3")
                                 .arg(identifier, m_name, loader.errorString()));
    }
    applySceneAttributes(root);
    ViewController *controller = makeController(root->property(customClassProperty).toString());
    auto *layout = new QVBoxLayout(controller);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(root);
    controller->resize(root->size());
    LayoutConstraint::makeSceneConstraints(root);
    controller->awakeFromNib();
    return controller;
}

QWidget *Storyboard::loadNibNamed(const QString &name, const Bundle &bundle)
{
    const QString path = bundle.pathForResource(name, QStringLiteral("ui"));
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return nullptr;
    SceneLoader loader;
    QWidget *root = loader.load(&file);
    if (!root)
        return nullptr;
    applySceneAttributes(root);
    LayoutConstraint::makeSceneConstraints(root);
    return root;
}

void Storyboard::registerViewControllerClass(const QString &className, ControllerFactory factory)
{
    controllerClasses().insert(className, std::move(factory));
}

void Storyboard::registerWidgetAttribute(const char *className, const QString &attribute, AttributeSetter setter)
{
    widgetAttributes().insert(attribute, WidgetAttribute{className, std::move(setter)});
}

void Storyboard::registerWidgetClass(const QString &className, WidgetFactory factory)
{
    SceneLoader::widgetClasses().insert(className, std::move(factory));
}

} // namespace ZQTPlatform
