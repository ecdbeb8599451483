#pragma once

#include <string>

/// Texts for a terminal, whoever wrote them. Pure functions; UTF-8.
namespace roost {

/// `text` on one line, without anything that a terminal would act upon: control characters come out as "·",
/// those that turn the direction of text are left out.
std::string onOneLine(const std::string& text);

/// `text`, isolated from what stands beside it (UAX #9 §2.4.2) when anything in it runs from right to left:
/// a terminal that orders letters would else take the columns of a line along.
std::string isolated(const std::string& text);

/// How many columns of a terminal `text` takes.
int displayWidth(const std::string& text);

/// `text` cut to `width` columns, the last of which is then "…".
std::string elided(const std::string& text, int width);

} // namespace roost
