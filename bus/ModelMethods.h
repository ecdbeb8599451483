#pragma once

#include "app/AppModel.h"

#include <QCoro/QCoroTask>
#include <QString>
#include <QVariantList>

#include <expected>
#include <functional>
#include <map>

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

/// What is answered.
using Answer = std::expected<QVariantList, Refusal>;

struct Method {
    /// The types of the arguments, and of what is answered.
    QString signature;
    QString results;
    /// Does it, with arguments of those types; ends when it is time to answer.
    QCoro::Task<Answer> (*run)(App app, QVariantList arguments);
};

/// All of them, by name.
const std::map<QString, Method>& all();

} // namespace roost::ModelMethods
