#pragma once

#include <QtGlobal>

#include <algorithm>
#include <iterator>
#include <string_view>

/// Every fixed text that people see, declared once: the English text is the key under which the catalogues
/// (present/translations) keep its translations. The comment above an entry is for the translators and goes
/// into the catalogues; after a change here, build the target "update_translations".
namespace roost {

/// What a text is filled with before it is shown.
enum class Filling {
    nothing,
    text,  ///< one "%@": a text that is ready to show, such as a number, an age or a version
    count, ///< one "%lld": a whole number; the text has the plural forms of each language
};

struct RoostText {
    std::string_view key;
    Filling filling = Filling::nothing;
};

// clang-format off
inline constexpr RoostText roostTexts[] = {
    // Everywhere

    //: The name of the program: a window title and a heading. Stays as it is.
    {QT_TRANSLATE_NOOP("Roost", "Brisken Roost")},
    //: Button: fetch the numbers now. Not to be mistaken for the updates of the program.
    {QT_TRANSLATE_NOOP("Roost", "Refresh")},
    //: Stands for the name of a profile until the name is known.
    {QT_TRANSLATE_NOOP("Roost", "Profile")},
    //: Stands for the words of a post that has none.
    {QT_TRANSLATE_NOOP("Roost", "Untitled post")},
    //: The day of a scheduled post. Stands alone, before a clock time.
    {QT_TRANSLATE_NOOP("Roost", "Today")},
    //: The day of a scheduled post. Stands alone, before a clock time.
    {QT_TRANSLATE_NOOP("Roost", "Tomorrow")},
    //: How many posts wait to be published.
    {QT_TRANSLATE_N_NOOP("Roost", "%lld scheduled"), Filling::count},

    // What went wrong while signing in

    //: Error message.
    {QT_TRANSLATE_NOOP("Roost", "Brisken Roost could not be reached. Check your connection and try again.")},
    //: Error message: the service refused.
    {QT_TRANSLATE_NOOP("Roost", "Roost did not allow this connection. Try signing in again.")},
    //: Error message: the answer could not be trusted, so it was dropped.
    {QT_TRANSLATE_NOOP("Roost", "The sign-in did not complete safely, so nothing was saved. Try again.")},
    //: Error message.
    {QT_TRANSLATE_NOOP("Roost", "Something went wrong. Try again.")},

    // Where the program lies

    //: Title of an alert. "Applications" is the folder, as the system names it.
    {QT_TRANSLATE_NOOP("Roost", "Move Brisken Roost to Applications first")},
    //: Body of that alert.
    {QT_TRANSLATE_NOOP("Roost", "Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at login. Drag it there, eject the disk image if there is one, and open it from there.")},
    //: Button of that alert: opens the folder.
    {QT_TRANSLATE_NOOP("Roost", "Show Applications")},
    //: Button of that alert: closes it.
    {QT_TRANSLATE_NOOP("Roost", "Not now")},
    //: Beside the switch "Open Brisken Roost at login". The places are named as macOS names them.
    {QT_TRANSLATE_NOOP("Roost", "macOS wants your approval in System Settings, Login Items.")},
    //: Button beside that text.
    {QT_TRANSLATE_NOOP("Roost", "Open System Settings")},

    // Notifications

    //: Title. %@ is a short number: 1K, 10K or 100K as the language writes it.
    {QT_TRANSLATE_NOOP("Roost", "A post passed %@ views"), Filling::text},
    //: Title.
    {QT_TRANSLATE_NOOP("Roost", "New best post of the week")},
    //: Part of a line, after the text of a post. %@ is a short number.
    {QT_TRANSLATE_NOOP("Roost", "Views: %@"), Filling::text},
    //: Title: a scheduled post was published.
    {QT_TRANSLATE_NOOP("Roost", "Post went out")},
    //: Title, and the switch for it: a scheduled post could not be published.
    {QT_TRANSLATE_NOOP("Roost", "A post did not go out")},
    //: Body, under "A post did not go out".
    {QT_TRANSLATE_NOOP("Roost", "Open Brisken Roost to see why.")},
    //: Title. %@ is a number with its sign, such as +12.
    {QT_TRANSLATE_NOOP("Roost", "New followers: %@"), Filling::text},
    //: Body, under "New followers": how many there are now. %@ is a short number.
    {QT_TRANSLATE_NOOP("Roost", "Total: %@"), Filling::text},
    //: Button under a notification: opens the page that it is about.
    {QT_TRANSLATE_NOOP("Roost", "Open")},

    // Updates of the program

    //: %@ is a version, such as 1.4.2.
    {QT_TRANSLATE_NOOP("Roost", "Version %@ is available."), Filling::text},
    //: %@ is a version, such as 1.4.2.
    {QT_TRANSLATE_NOOP("Roost", "Version %@ is ready to install."), Filling::text},
    //: Button: the program, not the computer, starts again.
    {QT_TRANSLATE_NOOP("Roost", "Restart to update")},
    //: Button.
    {QT_TRANSLATE_NOOP("Roost", "Check for updates")},
    //: Explanation beside "Check for updates".
    {QT_TRANSLATE_NOOP("Roost", "Brisken Roost looks for updates by itself, twice a day.")},

    // The popover

    //: Heading of the card that nobody has signed in on.
    {QT_TRANSLATE_NOOP("Roost", "Connect Brisken Roost")},
    //: Text of that card.
    {QT_TRANSLATE_NOOP("Roost", "Sign in once. Brisken Roost only reads your numbers and never publishes from this app.")},
    //: State of a profile.
    {QT_TRANSLATE_NOOP("Roost", "Signed out")},
    //: State of a profile. %@ is an age: "now" or "5 min. ago" as the language says it.
    {QT_TRANSLATE_NOOP("Roost", "Updated %@"), Filling::text},
    //: State of a profile, and heading of a widget, before the first numbers.
    {QT_TRANSLATE_NOOP("Roost", "Getting your numbers…")},
    //: Menu entry: a page of the web app, about who may use the profile.
    {QT_TRANSLATE_NOOP("Roost", "Agents & access")},

    // The settings

    //: Under the heading "Brisken Roost".
    {QT_TRANSLATE_NOOP("Roost", "Your numbers, on the desktop.")},
    //: Above the button "Sign in with Brisken Roost".
    {QT_TRANSLATE_NOOP("Roost", "Sign in with your Brisken Roost account. A browser window opens: choose the profile and allow read-only access. Nothing is ever published from this app.")},
    //: Button.
    {QT_TRANSLATE_NOOP("Roost", "Sign in with Brisken Roost")},
    //: Button beside a profile: forget it here.
    {QT_TRANSLATE_NOOP("Roost", "Remove")},
    //: Note about the button "Remove". Holds the exact words of "Agents & access", which become a link.
    {QT_TRANSLATE_NOOP("Roost", "Remove only stops this app. To end the connection for good, use Agents & access in Roost.")},
    //: Button.
    {QT_TRANSLATE_NOOP("Roost", "Add another profile")},
    //: Switch.
    {QT_TRANSLATE_NOOP("Roost", "Open Brisken Roost at login")},
    //: Note.
    {QT_TRANSLATE_NOOP("Roost", "Numbers refresh every 5 minutes while the app is open.")},
    //: Switch of a notification. 1K is a thousand.
    {QT_TRANSLATE_NOOP("Roost", "A post passes 1K, 10K or 100K views")},
    //: Switch of a notification.
    {QT_TRANSLATE_NOOP("Roost", "A new best post of the week")},
    //: Switch of a notification.
    {QT_TRANSLATE_NOOP("Roost", "A scheduled post went out")},
    //: Switch of a notification.
    {QT_TRANSLATE_NOOP("Roost", "New followers")},
    //: How to add a widget, first step.
    {QT_TRANSLATE_NOOP("Roost", "Right-click an empty spot on the desktop.")},
    //: How to add a widget, second step. "Edit Widgets" as macOS names it.
    {QT_TRANSLATE_NOOP("Roost", "Choose Edit Widgets.")},
    //: How to add a widget, third step.
    {QT_TRANSLATE_NOOP("Roost", "Search for “Brisken Roost” and drag a widget out.")},
    //: Caption over pictures of widgets.
    {QT_TRANSLATE_NOOP("Roost", "Preview with sample numbers.")},
    //: Note.
    {QT_TRANSLATE_NOOP("Roost", "Widgets need macOS 14 Sonoma or later.")},
    //: Warning, for people who built the program themselves. "Signed" as with a certificate.
    {QT_TRANSLATE_NOOP("Roost", "This build is not signed with the shared folder, so widgets cannot read its numbers. Install a signed build.")},
    //: At the bottom of the settings, above the version.
    {QT_TRANSLATE_NOOP("Roost", "Brisken Roost for Mac only reads your numbers. It publishes nothing, has no analytics, and contacts nothing but Roost.")},

    // The widgets

    //: Under "Getting your numbers…".
    {QT_TRANSLATE_NOOP("Roost", "This takes a few seconds the first time.")},
    //: Heading of a widget that nobody has signed in for.
    {QT_TRANSLATE_NOOP("Roost", "Open Brisken Roost to connect")},
    //: Text under that heading.
    {QT_TRANSLATE_NOOP("Roost", "Sign in once and your numbers will appear here.")},
    //: Heading.
    {QT_TRANSLATE_NOOP("Roost", "No numbers yet")},
    //: Text under that heading. A post reports when its network tells numbers.
    {QT_TRANSLATE_NOOP("Roost", "Numbers show up here once your posts start reporting.")},
    //: Heading: no post waits to be published.
    {QT_TRANSLATE_NOOP("Roost", "Nothing scheduled")},
    //: Text under that heading.
    {QT_TRANSLATE_NOOP("Roost", "Schedule a post in Brisken Roost and it shows up here.")},
    //: How many posts could not be published.
    {QT_TRANSLATE_N_NOOP("Roost", "Failed: %lld"), Filling::count},
    //: Heading over one post.
    {QT_TRANSLATE_NOOP("Roost", "Best post")},
    //: Heading over a number.
    {QT_TRANSLATE_NOOP("Roost", "Followers")},
};
// clang-format on

/// `key` as it stands. A text that is not in the table does not compile.
consteval std::string_view knownText(std::string_view key)
{
    if (std::ranges::find(roostTexts, key, &RoostText::key) == std::end(roostTexts)) {
        throw "this text is not in the table";
    }
    return key;
}

} // namespace roost
