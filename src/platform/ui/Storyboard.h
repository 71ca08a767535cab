// A storyboard: the scenes of one folder of a bundle, each an interface file "<identifier>.ui".
// Instantiating a scene builds its widgets with Qt's form loader (which also knows the
// component's own widget classes), makes the view controller of the class named by the dynamic
// property "customClass" of the scene's root widget, puts the widgets into it, makes the
// scene's named layout constraints, and calls awakeFromNib. Outlets are found by object name.
// Dynamic properties of the scene's widgets that are registered as widget attributes are applied
// through their setters when the scene is loaded, before awakeFromNib.
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Bundle.h"

#include <QString>
#include <functional>

class QWidget;

namespace ZQTPlatform {

class ViewController;

class ZQT_EXPORT Storyboard
{
public:
    using ControllerFactory = std::function<ViewController *()>;
    using WidgetFactory = std::function<QWidget *(QWidget *parent)>;
    using AttributeSetter = std::function<void(QWidget *widget, const QString &value)>;

    Storyboard() = default; // the null storyboard

    // The storyboard in folder <name>/ of the bundle; null when the bundle has no such folder.
    static Storyboard storyboardWithName(const QString &name, const Bundle &bundle);

    bool isNull() const { return m_path.isEmpty(); }
    QString name() const { return m_name; }

    // A new controller for the scene; the caller owns it. Throws ZQTPlatform::Exception
    // ("NSInvalidArgumentException") when the storyboard has no such scene or it cannot be read.
    ViewController *instantiateViewControllerWithIdentifier(const QString &identifier) const;

    // Makes the class named className available to scenes' "customClass" property. The class
    // leaves its own layout unset: the scene's root widget is laid into it, filling it.
    static void registerViewControllerClass(const QString &className, ControllerFactory factory);
    template <class T>
    static bool registerViewControllerClass(const QString &className)
    {
        registerViewControllerClass(className, [] { return new T; });
        return true;
    }
    // Makes a widget class available to scenes (as a custom widget of that class name).
    static void registerWidgetClass(const QString &className, WidgetFactory factory);
    // Makes the dynamic string property `attribute` of scene widgets that inherit `className` a
    // write-only attribute: when a scene is loaded, the setter gets the property's value (GUI
    // thread) and the property is taken off the widget. Attributes of one widget are applied in
    // the order the scene file gives them.
    static void registerWidgetAttribute(const char *className, const QString &attribute, AttributeSetter setter);

    // The root widget of the interface file "<name>.ui" at the top of the bundle, built as scenes
    // are (registered widget classes, attributes, named height constraints); the caller owns it.
    // nullptr when the bundle has no such file or it yields no widget. GUI thread only.
    static QWidget *loadNibNamed(const QString &name, const Bundle &bundle);

private:
    Storyboard(const QString &name, const QString &path) : m_name(name), m_path(path) {}

    QString m_name;
    QString m_path;
};

} // namespace ZQTPlatform
