#pragma once

// What a host library must provide, checked while the module is compiled: docs/hostlibrary.md says
// it in words. Each operation is one that the module calls or overrides.

#include <ovplugininterface.h>
#include <ovpolyline.h>
#include <ovvector.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <concepts>
#include <type_traits>

namespace ovtrace::hostcheck {

template <class Vector>
concept IsVector = std::constructible_from<Vector, double, double, double, bool> &&
    std::copyable<Vector> && requires(Vector v) {
    { v.x } -> std::same_as<double&>;
    { v.y } -> std::same_as<double&>;
    { v.z } -> std::same_as<double&>;
};

template <class Spline>
concept IsSpline = std::default_initializable<Spline> && std::derived_from<Spline, OvShape> &&
    requires(Spline s, const OvVector& point) {
    s.setDegree(2);
    s.appendControlPoint(point);
};

template <class Polyline>
concept IsPolyline = std::default_initializable<Polyline> && std::copyable<Polyline> &&
    requires(Polyline p, const Polyline c, const OvVector& point, const OvSpline& spline) {
    p.appendVertex(point, 0.0, 0.0, 0.0);
    p.appendShape(spline, false);
    { c.getEndPoint() } -> std::convertible_to<OvVector>;
};

template <class Info>
concept IsPluginInfo = std::default_initializable<Info> && std::copyable<Info> &&
    requires(Info info, const QString& key, const QVariant& value) {
    info.set(key, value);
};

template <class Interface>
concept IsPluginInterface = std::is_abstract_v<Interface> &&
    std::has_virtual_destructor_v<Interface> &&
    requires(Interface& plugin, typename Interface::InitStatus status) {
    { plugin.init() } -> std::same_as<bool>;
    { plugin.uninit(true) } -> std::same_as<void>;
    { plugin.postInit(status) } -> std::same_as<void>;
    { plugin.initTranslations() } -> std::same_as<void>;
    { plugin.getPluginInfo() } -> std::same_as<OvPluginInfo>;
};

template <class Interface>
concept HasIdentifier = requires {
    qobject_interface_iid<Interface*>();
};

static_assert(IsVector<OvVector>,
              "the host library's OvVector must be a copyable value made of (double x, double y, "
              "double z, bool valid) with the members x, y and z");
static_assert(IsSpline<OvSpline>,
              "the host library's OvSpline must be a default-made OvShape with setDegree(int) and "
              "appendControlPoint(OvVector); ovpolyline.h brings it");
static_assert(IsPolyline<OvPolyline>,
              "the host library's OvPolyline must be a default-made, copyable value with "
              "appendVertex(OvVector, double bulge, double startWidth, double endWidth), "
              "appendShape(const OvShape&, bool) and getEndPoint() const");
static_assert(IsPluginInfo<OvPluginInfo>,
              "the host library's OvPluginInfo must be a default-made, copyable value with "
              "set(QString, QVariant); ovplugininterface.h brings it");
static_assert(
    IsPluginInterface<OvPluginInterface>,
    "the host library's OvPluginInterface must be an abstract class with a virtual "
    "destructor, the type InitStatus, bool init(), void uninit(bool), "
    "void postInit(InitStatus), void initTranslations() and OvPluginInfo getPluginInfo()");
static_assert(HasIdentifier<OvPluginInterface>,
              "the host library must declare OvPluginInterface by Q_DECLARE_INTERFACE");

} // namespace ovtrace::hostcheck
