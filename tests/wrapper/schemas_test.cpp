#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <type_traits>

#include "tests/schema/feature_schema.h"
#include "tests/support/faults.h"
#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::parsed;

std::span<const SchemaTopObject> features() {
    return {featureSchema, featureSchemaCount};
}

// As xsd2c writes them.
std::uint32_t registerFeatures(SchemaRoot *root) {
    std::uint32_t result = 0;
    for (const SchemaTopObject &object : features()) result += Schema_RegTopObject(root, &object);
    return result;
}
std::uint32_t deregisterFeatures(SchemaRoot *root) {
    std::uint32_t result = 0;
    for (const SchemaTopObject &object : features()) result += Schema_DeregTopObject(root, &object);
    return result;
}
std::uint32_t registerAndFail(SchemaRoot *root) {
    registerFeatures(root);
    return XML_REFUSED;
}

Document features(std::string_view content) {
    return parsed("<features xmlns='urn:features'>" + std::string(content) + "</features>");
}

static_assert(!std::is_copy_constructible_v<Schemas> && !std::is_move_constructible_v<Schemas> &&
              !std::is_copy_assignable_v<Schemas> && !std::is_move_assignable_v<Schemas>);

TEST(WrapperSchemas, AcceptAValidDocument) {
    Schemas schemas;
    schemas.add(registerFeatures, deregisterFeatures).value();
    const Document document = features("<base id='1'><name>n</name></base>");
    const Verdict verdict = schemas.validate(document);
    EXPECT_TRUE(verdict) << verdict.error().message;
    EXPECT_EQ(verdict.error().code, XML_OK);
    EXPECT_FALSE(verdict.where());
    EXPECT_NO_THROW(schemas.validate(document.root()).value());
    EXPECT_NO_THROW(schemas.validate(document, 1).value());
}

TEST(WrapperSchemas, SayWhatIsWrongAndWhere) {
    Schemas schemas;
    schemas.add(registerFeatures, deregisterFeatures).value();
    const Document document = features("<base id='1'><name>n</name><limit>101</limit></base>");
    const Verdict verdict = schemas.validate(document);
    ASSERT_FALSE(verdict);
    EXPECT_EQ(verdict.error().code, 3U);
    EXPECT_EQ(verdict.error().message,
              "The value of element '/features/base[1]/limit[1]' is invalid. "
              "101 does not match any member of union");
    EXPECT_EQ(verdict.where(), document.root().select("base/limit"));
    try {
        verdict.value();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception &exception) {
        EXPECT_EQ(exception.error().code, 3U);
        EXPECT_EQ(exception.error().message, verdict.error().message);
    }
}

TEST(WrapperSchemas, MessagesAreUtf8) {
    Schemas schemas;
    schemas.add(registerFeatures, deregisterFeatures).value();
    EXPECT_EQ(
        schemas.validate(features("<value>口</value>")).error().message,
        "The value of element '/features/value[1]' is invalid. 口 is an invalid value of int type "
        "value.");
}

TEST(WrapperSchemas, MessagesThatWereCutInsideACharacterArePlain) {
    Schemas schemas;
    schemas.add(registerFeatures, deregisterFeatures).value();
    // A value of two bytes a character is quoted in part, which ends inside one for one of the two.
    std::string value;
    for (int i = 0; i < 600; ++i) value += "口";
    std::size_t plain = 0, whole = 0;
    for (const std::string_view begin : {"", "a"}) {
        const std::string content = "<value>" + std::string(begin) + value + "</value>";
        const Verdict verdict = schemas.validate(features(content));
        EXPECT_EQ(verdict.error().code, 3U);
        const std::string start = "The value of element '/features/value[1]' is invalid. ";
        EXPECT_TRUE(verdict.error().message.starts_with(start)) << verdict.error().message;
        plain += verdict.error().message.starts_with(start + std::string(begin) + "??");
        whole += verdict.error().message.starts_with(start + std::string(begin) + "口口");
    }
    EXPECT_EQ(plain, 1U);
    EXPECT_EQ(whole, 1U);
}

TEST(WrapperSchemas, RefuseWhatIsNoDocument) {
    const Schemas schemas;
    const Verdict verdict = schemas.validate(Document());
    EXPECT_FALSE(verdict);
    EXPECT_EQ(verdict.error().code, XML_REFUSED);
    EXPECT_FALSE(schemas.validate(Element()));
}

TEST(WrapperSchemas, KnowNothingAtFirst) {
    const Schemas schemas;
    EXPECT_EQ(schemas.validate(features("")).error().message,
              "The root element of XML document is invalid.");
}

TEST(WrapperSchemas, TakeBackWhatCouldNotBeRegistered) {
    Schemas schemas;
    const SchemaRoot before = *schemas.get();
    const Result<void> added = schemas.add(registerAndFail, deregisterFeatures);
    EXPECT_FALSE(added);
    EXPECT_EQ(added.error().message, "cannot register the schema");
    EXPECT_EQ(schemas.get()->elements.count, before.elements.count);
    EXPECT_EQ(schemas.get()->simpleTypes.count, before.simpleTypes.count);
    EXPECT_FALSE(schemas.validate(features("")));
    schemas.add(registerFeatures, deregisterFeatures).value();
    EXPECT_TRUE(schemas.validate(features("")));
}

TEST(WrapperSchemas, AreAddedWholeOrNotAtAll) {
    const Document document = features("<base id='1'><name>n</name></base>");
    std::size_t refused = 0;
    bool failed = true;
    for (std::size_t at = 1; failed; ++at) {
        std::optional<support::FaultyHeap> heap(at);
        Schemas schemas;
        const Result<void> added = schemas.add(registerFeatures, deregisterFeatures);
        failed = heap->failed();
        heap.reset();
        refused += !added;
        EXPECT_EQ(schemas.get()->elements.count, added ? 3U : 0U) << "allocation " << at;
        EXPECT_EQ(schemas.validate(document).error().code, added ? XML_OK : 12U);
    }
    EXPECT_GT(refused, 0U);
}

TEST(WrapperSchemas, SayWhenNothingCanBeSaid) {
    Schemas schemas;
    schemas.add(registerFeatures, deregisterFeatures).value();
    const Document document = features("<base id='1'><name>n</name></base>");
    const support::FaultyHeap heap(1, true);
    const Verdict verdict = schemas.validate(document);
    EXPECT_FALSE(verdict);
    EXPECT_EQ(verdict.error().code, XML_REFUSED);
    EXPECT_FALSE(verdict.where());
    EXPECT_EQ(heap.blocksInUse(), 0U);
}

TEST(WrapperSchemas, LeaveNothingBehind) {
    const support::FaultyHeap heap(0);
    {
        Schemas schemas;
        schemas.add(registerFeatures, deregisterFeatures).value();
        schemas.add(registerFeatures, deregisterFeatures).value();
        EXPECT_NE(heap.blocksInUse(), 0U);
    }
    EXPECT_EQ(heap.blocksInUse(), 0U);
}

}  // namespace
