#include "model/RoostStoreFileFields.h"

#include "tests/model/FieldTable.h"
#include "tests/support/Fixture.h"

namespace roost {
namespace {

using F = RoostStoreFile;

std::expected<F, JsonError> decoded(std::string text)
{
    return RoostJSON::decoder().decode<F>(std::move(text));
}

Date at(std::string_view text) { return RoostJSON::parseDate(text).value(); }

/// What store-full.json holds.
F full()
{
    RoostSnapshot snapshot;
    snapshot.generatedAt = at("2025-02-20T08:00:00Z");
    snapshot.profile = {"prf_1", "First", {}};
    snapshot.views.total = 17;
    using enum RoostAccountRecord::Status;
    return {
        1,
        at("2025-03-01T12:35:00.001Z"),
        {{"prf_1", "First", signedOut, snapshot, at("2025-02-20T08:00:01.5Z"), at("2025-03-01T12:34:59Z")},
         {"prf_2", "Second", ok, {}, {}, {}}}};
}

/// Every field of a store file and its records.
std::vector<FieldRow<F>> everyField()
{
    using enum FieldKind;
    return {
        {"/schema", integer, {}},
        {"/writtenAt", date, {}},
        {"/accounts", array, {}},
        {"/accounts/0/profileId", text, {}},
        {"/accounts/0/profileName", text, {}},
        // A word that nobody knows fails the record, see below; so the kind is not `word`.
        {"/accounts/0/status", text, {}},
        {"/accounts/0/snapshot", object, [](F& f) { f.accounts[0].snapshot.reset(); }},
        {"/accounts/0/fetchedAt", date, [](F& f) { f.accounts[0].fetchedAt.reset(); }},
        {"/accounts/0/lastAttemptAt", date, [](F& f) { f.accounts[0].lastAttemptAt.reset(); }},
    };
}

TEST(RoostStoreFileFields, ReadEveryFieldOfAFullDocument)
{
    EXPECT_EQ(decoded(test::fixture("store-full.json")), full());
}

TEST(RoostStoreFileFields, AreEachAbsentNullOrOfAWrongTypeAsDocumented)
{
    checkEveryField(nlohmann::json::parse(test::fixture("store-full.json")), full(), everyField());
    checkEveryField<F>(nlohmann::json::parse(test::fixture("store-full.json")), full(),
                       {{"/accounts/1", FieldKind::object, {}, true}});
    EXPECT_EQ(everyField().size(),
              std::tuple_size_v<std::remove_cvref_t<decltype(JsonFields<F>::fields)>> +
                  std::tuple_size_v<std::remove_cvref_t<decltype(JsonFields<RoostAccountRecord>::fields)>>);
}

TEST(RoostStoreFileFields, RefuseTheWholeFileForOneStatusThatNobodyKnows)
{
    const auto result = decoded(test::fixture("store-unknown-status.json"));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().text(), "accounts[1].status: not one of the known words");
    const auto document = nlohmann::json::parse(test::fixture("store-full.json"));
    for (const char* literal : {R"("")", R"("OK")", R"("Ok")", R"("signedout")", R"("signed-out")",
                                R"("ok ")", R"("ok\u0000")", R"("unknown")"}) {
        EXPECT_FALSE(decoded(withLiteral(document, "/accounts/1/status", literal))) << literal;
    }
    EXPECT_EQ(decoded(withLiteral(document, "/accounts/1/status", R"("signedOu\u0074")"))
                  .value()
                  .accounts.at(1)
                  .status,
              RoostAccountRecord::Status::signedOut);
}

TEST(RoostStoreFileFields, RefuseTheWholeFileForOneBadSnapshot)
{
    const auto document = nlohmann::json::parse(test::fixture("store-full.json"));
    const auto result = decoded(withoutKey(document, "/accounts/0/snapshot/profile/name"));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().text(), "accounts[0].snapshot.profile.name: missing");
}

TEST(RoostStoreFileFields, CompareTheSchemaWithNothing)
{
    const auto result = decoded(test::fixture("store-empty.json"));
    EXPECT_EQ(result.value().schema, 7);
    EXPECT_TRUE(result.value().accounts.empty());
}

TEST(RoostStoreFileFields, AreWrittenInTheOrderOfTheKeysWithSchema1)
{
    F file = full();
    file.accounts.erase(file.accounts.begin());
    file.schema = F{}.schema;
    file.accounts[0].fetchedAt = at("2025-01-02T03:04:05.6Z");
    EXPECT_EQ(
        RoostJSON::encoder().encode(file),
        R"({"accounts":[{"fetchedAt":"2025-01-02T03:04:05.600Z","profileId":"prf_2","profileName":"Second",)"
        R"("status":"ok"}],"schema":1,"writtenAt":"2025-03-01T12:35:00.001Z"})");
    file.accounts[0].status = RoostAccountRecord::Status::signedOut;
    EXPECT_EQ(nlohmann::json::parse(RoostJSON::encoder().encode(file)).at("accounts").at(0).at("status"),
              "signedOut");
}

TEST(RoostStoreFileFields, RefuseAFileThatEndsTooSoonAtWhateverByte)
{
    std::string whole = test::fixture("store-full.json");
    whole.erase(whole.find_last_of('}') + 1);
    ASSERT_TRUE(decoded(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        ASSERT_FALSE(decoded(whole.substr(0, size))) << size;
    }
}

} // namespace
} // namespace roost
