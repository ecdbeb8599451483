#include "programs/roost-service/ProfileTexts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace roost::local {

namespace {

struct Identity {
    std::string_view id;
    std::string_view name;
    std::string_view handle;
};

// Names that a careless program shows wrongly: other scripts, markup, one that is too long for its place.
constexpr std::array identities{
    Identity{"harbour-light", "Harbour Light Studio", "harbourlight"},
    Identity{"cafe-morgenrot", "Café Morgenröte", "cafe.morgenroete"},
    Identity{"mira-okafor", "Mira Okafor", "miraokafor"},
    Identity{"nawras", "مقهى النورس", "nawras.cafe"},
    Identity{"kumo-press", "雲プレス編集部", "kumopress"},
    Identity{"fjell-og-fjord", "Fjell & Fjord <ute>", "fjellogfjord"},
    Identity{"long-walks",
             "The Society for Long Walks along Quiet Coasts and for the Mending of Very Old Stone Bridges",
             "longwalks"},
};

constexpr std::array<std::string_view, 24> texts{
    "Morning light over the harbour. Same bench, new colours.",
    "We are open on Sunday after all: cinnamon rolls from nine.",
    "Behind the scenes: how we mix the deep red for the autumn posters",
    "Three things nobody told us about running a small shop",
    "New on the shelf 🌿 Hand-thrown cups, each one a little crooked",
    "",
    "Wochenende! Wer kommt mit auf den Markt?",
    "Zehn Jahre später: dieselbe Straße, derselbe Baum, größere Träume",
    "Une recette simple pour un dimanche de pluie",
    "وصفة جديدة كل أسبوع، والقهوة علينا",
    "פותחים את השבוע עם משהו מתוק",
    "今週のおすすめ：雨の日に読みたい三冊",
    "Fotos del taller, primera parte",
    "Thank you for 10 000 of you! 🎉🎉🎉",
    "A very small film about a very large kite",
    "Q&A on Thursday at 19:00, bring your \"impossible\" questions",
    "Draft → print → fold → post: the zine is on its way",
    "What we learnt from repairing one bicycle a week for a year, told in twelve pictures, two mistakes and "
    "a surprise "
    "that is still hanging on the wall of the workshop",
    "Kolmas päivä merellä, ja vihdoin tuulee",
    "Czekamy na pierwszy śnieg",
    "Hello 👋🏽 from the new studio",
    "The door is <open>, so is the kettle & the piano",
    "Second line below\nis where the good part is",
    "Goodnight.",
};

constexpr std::array<std::pair<std::string_view, std::string_view>, 10> labels{{
    {"instagram", "Instagram"},
    {"tiktok", "TikTok"},
    {"youtube", "YouTube"},
    {"x", "X"},
    {"linkedin", "LinkedIn"},
    {"threads", "Threads"},
    {"bluesky", "Bluesky"},
    {"pinterest", "Pinterest"},
    {"facebook", "Facebook"},
    {"telegram", "Telegram"},
}};

} // namespace

ProfileIdentity profileIdentity(std::size_t position)
{
    if (position < identities.size()) {
        const Identity& known = identities[position];
        return {std::string(known.id), std::string(known.name), std::string(known.handle)};
    }
    const std::string number = std::to_string(position + 1);
    return {"profile-" + number, "Profile " + number, "profile." + number};
}

std::string postText(std::uint64_t choice) { return std::string(texts[choice % texts.size()]); }

std::string_view platformLabel(std::string_view platform)
{
    const auto* found = std::ranges::find(labels, platform, &decltype(labels)::value_type::first);
    return found == labels.end() ? std::string_view() : found->second;
}

} // namespace roost::local
