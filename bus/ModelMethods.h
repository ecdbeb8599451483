#pragma once

#include "app/AppModel.h"

#include <QCoro/QCoroTask>
#include <QString>
#include <QVariantList>

#include <functional>
#include <map>
#include <optional>

/// What can be asked of the running app over the bus, as bus/world.brisken.roost.mac.Model1.xml describes it.
/// Main thread.
namespace roost::ModelMethods {

/// Who is asked.
struct App {
    /// Outlives the method's task.
    AppModel* model;
    /// Ends the program soon, after what is being answered.
    std::function<void()> quitSoon;
};

/// Why nothing was done: the name of an error and a sentence for developers.
struct Refusal {
    QString error;
    QString reason;
};

struct Method {
    /// The types of the arguments.
    QString signature;
    /// Does it, with arguments of those types; ends when it is time to answer.
    QCoro::Task<std::optional<Refusal>> (*run)(App app, QVariantList arguments);
};

/// All of them, by name.
const std::map<QString, Method>& all();

} // namespace roost::ModelMethods
