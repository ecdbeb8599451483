#pragma once

#include "model/AppState.h"

#include <QStringList>
#include <QVariantMap>

/// The published state in the types of the bus, as bus/world.brisken.roost.mac.Model1.xml describes it. Main
/// thread.
namespace roost::ModelProperties {

/// The names of all properties.
const QStringList& names();

/// Whether a change is announced without the value, which may be large.
bool isInvalidatedOnly(const QString& name);

/// The value of one property; invalid when there is no such property.
QVariant value(const AppState& state, const QString& name);

/// Has `state` say what `value`, as received from the bus, says of one property. False, and nothing changed,
/// when there is no such property or the value is not of its form.
bool take(AppState& state, const QString& name, const QVariant& value);

} // namespace roost::ModelProperties
