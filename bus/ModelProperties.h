#pragma once

#include "model/AppState.h"

#include <QString>
#include <QVariant>

#include <map>

/// The properties by which the app publishes its state on the bus, as
/// bus/world.brisken.roost.mac.Model1.xml describes them. Main thread.
namespace roost::ModelProperties {

struct Property {
    /// What the state says of it, in the types of the bus.
    QVariant (*value)(const AppState& state);
    /// Has the state say what was received from the bus. False, and nothing changed, when that is not of the
    /// property's form.
    bool (*take)(AppState& state, const QVariant& received);
    /// What the state emits after a change.
    void (AppState::*changed)();
    /// Whether a change is announced without the value, which may be large.
    bool isInvalidatedOnly = false;
};

/// All of them, by name.
const std::map<QString, Property>& all();

/// The one with that name; null when there is none.
const Property* find(const QString& name);

} // namespace roost::ModelProperties
