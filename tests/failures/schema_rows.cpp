// The functions of simple types, schemas, validation and the debug trace.
#include "tests/failures/row.h"

namespace failures {
namespace {

constexpr SchemaFacet kPattern = {"^[a-z]+$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kLength = {"3", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING};
constexpr char kChinese[] = "\xD6\xD0\xCE\xC4";

const SchemaSimpleType *patterned() {
    static const SchemaSimpleType *const kBase[] = {Schema_BLDIN_string()};
    static const SchemaSimpleType kType = {kBase, &kPattern, "t", nullptr, 0, 1, 1, 0};
    return &kType;
}

SchemaTopObject object() {
    return {Schema_BLDIN_string(), SCHEMA_KIND_SIMPLE_TYPE};
}

void bare(Stage &) {}
void schema(Stage &s) {
    s.prepareSchema();
}
void wrongDocument(Stage &s) {
    s.prepareSchema();
    XML_DOM_AddChildNode(s.root.get(), XML_DOM_CreateElementWithText("name", "UPPER"));
}
void validated(Stage &s) {
    wrongDocument(s);
    Schema_ValidateXml(s.root.get(), &s.schema->root(), &s.report);
}
void initialised(Stage &s) {
    Schema_InitRoot(&s.bareRoot);
}
void full(Stage &s) {
    // As many as the first array holds.
    const SchemaTopObject top = object();
    for (int i = 0; i < 32; ++i) Schema_RegTopObject(&s.bareRoot, &top);
}

// 1 is valid; want of memory makes a value invalid.
Answer valid(std::uint32_t result) {
    return result == 0 ? Answer::kRefused : good(result == 1);
}
Answer context(const SchemaValidateContext &validation) {
    return valid(validation.valid);
}

// Every type that could be registered is, and no list is half made.
std::string registeredInPart(const Stage &s) {
    const SchemaObjectList *lists[] = {&s.bareRoot.simpleTypes, &s.bareRoot.complexTypes};
    for (const SchemaObjectList *list : lists) {
        if ((list->items == nullptr) != (list->capacity == 0)) return "a list without its array";
        if (list->count > list->capacity) return "more objects than room";
        for (std::uint32_t i = 0; i < list->count; ++i) {
            if (!list->items[i]) return "a hole in a list";
        }
    }
    return "";
}

// The result sums up a refusal for each type that is missing.
Answer sumOfMissing(const SchemaRoot &root, std::uint32_t result) {
    const std::uint32_t missing = 31 - root.simpleTypes.count - root.complexTypes.count;
    if (result != missing * XML_REFUSED) return Answer::kWrong;
    return missing == 0 ? Answer::kGood : Answer::kRefused;
}

void addAllocating(std::vector<Row> *rows) {
    const std::vector<Row> allocating = {
        {"Schema_RegTopObject", "first of its kind", bare,
         [](Stage &s) {
             const SchemaTopObject top = object();
             return code(Schema_RegTopObject(&s.bareRoot, &top));
         }},
        {"Schema_RegTopObject", "33rd of its kind", full,
         [](Stage &s) {
             const SchemaTopObject top = object();
             return code(Schema_RegTopObject(&s.bareRoot, &top));
         }},
        {"Schema_InitRoot", "", bare,
         [](Stage &s) {
             Schema_InitRoot(&s.bareRoot);
             const std::uint32_t count =
                 s.bareRoot.simpleTypes.count + s.bareRoot.complexTypes.count;
             return count == 31 ? Answer::kGood : Answer::kRefused;
         },
         true, Trace::kOwn, registeredInPart},
        {"SchemaReg_xml_schema_buildin", "", bare,
         [](Stage &s) {
             return sumOfMissing(s.bareRoot, SchemaReg_xml_schema_buildin(&s.bareRoot));
         },
         true, Trace::kOwn, registeredInPart},
        needless({"Schema_ValidateXml", "valid", schema,
                  [](Stage &s) {
                      return code(Schema_ValidateXml(s.root.get(), &s.schema->root(), &s.report));
                  }}),
        needless({"Schema_ValidateXml", "invalid", wrongDocument,
                  [](Stage &s) {
                      return code(Schema_ValidateXml(s.root.get(), &s.schema->root(), &s.report));
                  }}),
        needless({"Schema_ValidateXmlEx", "", schema,
                  [](Stage &s) {
                      return code(
                          Schema_ValidateXmlEx(s.root.get(), &s.schema->root(), 1, &s.report));
                  }}),
    };
    rows->insert(rows->end(), allocating.begin(), allocating.end());
}

void addValues(std::vector<Row> *rows) {
    const auto add = [rows](const char *function, const char *scenario, Answer (*call)(Stage &)) {
        rows->push_back(
            {function, scenario, bare, call, false, Trace::kOwn, [](const Stage &) { return ""; }});
    };
    add("XML_IsMatchRegex", "",
        [](Stage &) { return valid(XML_IsMatchRegex("^(a|b)*$", "abba")); });
    add("SCHEMA_CheckBaseTypeNonNull", "ASCII",
        [](Stage &) { return valid(SCHEMA_CheckBaseTypeNonNull(SCHEMA_TYPE_INT, "5")); });
    add("Schema_CheckBaseType", "ASCII", [](Stage &s) {
        return valid(Schema_CheckBaseType(Schema_BLDIN_int(), "5", sizeof s.buffer, s.buffer));
    });
    add("SCHEMA_CheckBaseTypeNonNull", "Chinese",
        [](Stage &) { return valid(SCHEMA_CheckBaseTypeNonNull(SCHEMA_TYPE_QNAME, kChinese)); });
    add("Schema_CheckBaseType", "Chinese", [](Stage &s) {
        return valid(
            Schema_CheckBaseType(Schema_BLDIN_QName(), kChinese, sizeof s.buffer, s.buffer));
    });
    add("Schema_IsValidDay", "", [](Stage &) { return valid(Schema_IsValidDay(2000, 2, 29)); });
    add("Schema_CmpDateTime", "", [](Stage &) {
        const SchemaDateTimeValue early{}, late{2001, 1, 1, 0, 0, 0, 0, 0, "5", 0};
        return good(Schema_CmpDateTime(&late, &early) > 0);
    });
    add("Schema_CheckFacet", "length", [](Stage &s) {
        return code(Schema_CheckFacet(&kLength, "abc", sizeof s.buffer, s.buffer));
    });
    add("Schema_CheckFacet", "pattern", [](Stage &s) {
        return code(Schema_CheckFacet(&kPattern, "abc", sizeof s.buffer, s.buffer));
    });
    add("Schema_CheckFacets", "", [](Stage &s) {
        const SchemaFacet facets[] = {kPattern, kLength};
        SchemaValidateContext validation{};
        validation.valid = 1;
        Schema_CheckFacets(facets, 2, "abc", sizeof s.buffer, &validation, s.buffer);
        return context(validation);
    });
    add("Schema_CheckSimpleType", "", [](Stage &s) {
        SchemaValidateContext validation{};
        validation.valid = 1;
        Schema_CheckSimpleType(patterned(), "abc", sizeof s.buffer, &validation, s.buffer);
        return context(validation);
    });
    add("Schema_checkValueOfElement", "", [](Stage &s) {
        const SchemaTypedRef type = {patterned(), SCHEMA_KIND_SIMPLE_TYPE};
        return code(Schema_checkValueOfElement(&type, "abc", sizeof s.buffer, s.buffer));
    });
    add("Schema_FoundKestBltInType", "",
        [](Stage &) { return pointer(Schema_FoundKestBltInType("OID", nullptr)); });
    add("Schema_checkKestBltInType", "", [](Stage &s) {
        const SchemaKestType *row = Schema_FoundKestBltInType("_VlanRange", nullptr);
        return valid(Schema_checkKestBltInType(row, "1-5,7", sizeof s.buffer, s.buffer));
    });
    add("Schema_GetFirstSplitStr", "", [](Stage &s) {
        SchemaSplitState state{};
        return pointer(Schema_GetFirstSplitStr("a,b", ",", sizeof s.buffer, s.buffer, &state));
    });
    add("Schema_GetNextSplitStr", "", [](Stage &s) {
        SchemaSplitState state{};
        Schema_GetFirstSplitStr("a,b", ",", sizeof s.buffer, s.buffer, &state);
        return pointer(Schema_GetNextSplitStr(&state));
    });
    add("Schema_LanguageHandler", "", [](Stage &) { return valid(Schema_LanguageHandler("en")); });
    add("Schema_ReplaceInnerTypeNS", "",
        [](Stage &) { return code(Schema_ReplaceInnerTypeNS("OID", nullptr, nullptr)); });
}

void addRoots(std::vector<Row> *rows) {
    const auto add = [rows](const char *function, void (*prepare)(Stage &),
                            Answer (*call)(Stage &)) {
        rows->push_back(
            {function, "", prepare, call, false, Trace::kOwn, [](const Stage &) { return ""; }});
    };
    add("Schema_ExitRoot", initialised,
        [](Stage &s) { return nothing([&] { Schema_ExitRoot(&s.bareRoot); }); });
    add("SchemaDereg_xml_schema_buildin", initialised,
        [](Stage &s) { return code(SchemaDereg_xml_schema_buildin(&s.bareRoot)); });
    add("Schema_DeregTopObject", full, [](Stage &s) {
        const SchemaTopObject top = object();
        return code(Schema_DeregTopObject(&s.bareRoot, &top));
    });
    add("Schema_CheckAttrsAsElement", schema, [](Stage &s) {
        return code(Schema_CheckAttrsAsElement(&s.schema->root(), "r.name", "abc", sizeof s.buffer,
                                               s.buffer));
    });
    add("Schema_GetErrorDesc", validated,
        [](Stage &s) { return code(Schema_GetErrorDesc(&s.report, sizeof s.buffer, s.buffer)); });
}

void addBuiltIns(std::vector<Row> *rows) {
#define BUILT_IN(name)                                \
    rows->push_back({"Schema_BLDIN_" #name, "", bare, \
                     [](Stage &) { return pointer(Schema_BLDIN_##name()); }, false})
    BUILT_IN(anySimpleType);
    BUILT_IN(anyType);
    BUILT_IN(anyURI);
    BUILT_IN(base64Binary);
    BUILT_IN(boolean);
    BUILT_IN(byte);
    BUILT_IN(date);
    BUILT_IN(dateTime);
    BUILT_IN(duration);
    BUILT_IN(gDay);
    BUILT_IN(gMonth);
    BUILT_IN(gMonthDay);
    BUILT_IN(gYear);
    BUILT_IN(gYearMonth);
    BUILT_IN(hexBinary);
    BUILT_IN(int);
    BUILT_IN(integer);
    BUILT_IN(language);
    BUILT_IN(long);
    BUILT_IN(negativeInteger);
    BUILT_IN(nonNegativeInteger);
    BUILT_IN(nonPositiveInteger);
    BUILT_IN(positiveInteger);
    BUILT_IN(QName);
    BUILT_IN(short);
    BUILT_IN(string);
    BUILT_IN(time);
    BUILT_IN(unsignedByte);
    BUILT_IN(unsignedInt);
    BUILT_IN(unsignedLong);
    BUILT_IN(unsignedShort);
#undef BUILT_IN
}

template <class Call>
Answer traced(const Call &call) {
    const std::uint32_t before = Schema_Debug_Enable(1);
    call();
    Schema_Debug_Enable(before);
    return Answer::kGood;
}

void addTrace(std::vector<Row> *rows) {
    const auto add = [rows](const char *function, Answer (*call)(Stage &)) {
        Row row = {function, "", schema, call, false};
        row.prints = true;
        rows->push_back(std::move(row));
    };
    add("Schema_Debug_Enable", [](Stage &) { return traced([] {}); });
    // One after the other leaves the indentation as it was.
    add("Schema_Debug_BlankAdd", [](Stage &) {
        return traced([] {
            Schema_Debug_BlankAdd();
            Schema_Debug_BlankSub();
        });
    });
    add("Schema_Debug_BlankSub", [](Stage &) {
        return traced([] {
            Schema_Debug_BlankSub();
            Schema_Debug_BlankAdd();
        });
    });
    add("Schema_Debug_ShowMsg",
        [](Stage &) { return traced([] { Schema_Debug_ShowMsg("%d %s", 7, "text"); }); });
    add("Schema_Debug_ShowMsgLine",
        [](Stage &) { return traced([] { Schema_Debug_ShowMsgLine("%d %s", 7, "text"); }); });
    add("Schema_Debug_ShowNode",
        [](Stage &s) { return traced([&] { Schema_Debug_ShowNode(s.root.get(), "function"); }); });
    add("Schema_Debug_ListTopObjects",
        [](Stage &s) { return traced([&] { Schema_Debug_ListTopObjects(&s.schema->root()); }); });
}

}  // namespace

std::vector<Row> schemaRows() {
    std::vector<Row> rows;
    addAllocating(&rows);
    addValues(&rows);
    addRoots(&rows);
    addBuiltIns(&rows);
    addTrace(&rows);
    return rows;
}

}  // namespace failures
