#pragma once

#include "model/Date.h"
#include "model/RoostAccountRecord.h"
#include "model/SignInState.h"
#include "model/UpdateStatus.h"

#include <QVariant>

#include <optional>
#include <string>
#include <vector>

/// The values of the published state in the types of the bus, as bus/world.brisken.roost.mac.Model1.xml
/// describes them. Main thread.
namespace roost::BusValues {

/// Whether a text comes over the bus as it is: not one with a zero byte, where it would be cut off, one that
/// begins with a byte-order mark, which would be lost, or one that is no UTF-8.
bool canCross(const std::string& text);

/// "b"
QVariant sent(bool value);
/// "ax", in milliseconds since 1970
QVariant sent(const std::optional<Date>& value);
/// "as"; a text that cannot cross counts as absent
QVariant sent(const std::optional<std::string>& value);
/// "s", the form of widget-state.json
QVariant sent(const std::vector<RoostAccountRecord>& value);
/// "(ss)"
QVariant sent(const SignInState::Any& value);
/// "(asasb)"
QVariant sent(const UpdateStatus& value);

/// What was sent, of one of the types above; nothing when `value`, as it came from the bus, is none that
/// `sent` could have given for a T.
template <class T>
std::optional<T> received(const QVariant& value);

template <>
std::optional<bool> received(const QVariant& value);
template <>
std::optional<std::optional<Date>> received(const QVariant& value);
template <>
std::optional<std::optional<std::string>> received(const QVariant& value);
template <>
std::optional<std::vector<RoostAccountRecord>> received(const QVariant& value);
template <>
std::optional<SignInState::Any> received(const QVariant& value);
template <>
std::optional<UpdateStatus> received(const QVariant& value);

} // namespace roost::BusValues
