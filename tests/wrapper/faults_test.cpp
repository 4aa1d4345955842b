// Every function with every allocation of the library failing in turn.
#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "tests/support/faults.h"
#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::parsed;
using wrapper::written;

// Runs work(at) with the first allocation failing, then the second ... until none does, and checks that
// it leaves nothing behind. work returns whether it succeeded.
template <class Work>
void withEachFault(const Work &work) {
    for (std::size_t at = 1; at < 10000; ++at) {
        const support::FaultyHeap heap(at);
        const bool good = work();
        EXPECT_EQ(heap.blocksInUse(), 0U) << "allocation " << at;
        EXPECT_EQ(good, !heap.failed() || heap.failedOptionally()) << "allocation " << at;
        if (heap.failed()) continue;
        EXPECT_GT(at, 1U) << "nothing was allocated";
        return;
    }
    FAIL() << "it never succeeds";
}

// A refusal must say something.
template <class T>
bool isGood(const Result<T> &result) {
    EXPECT_EQ(static_cast<bool>(result), result.error().message.empty());
    return static_cast<bool>(result);
}

constexpr std::string_view kDocument =
    "<r xmlns:p='urn:p' p:a='1' b='口'>端<c/><![CDATA[x]]><p:d/></r>";

TEST(WrapperFaults, Parsing) {
    withEachFault([] { return isGood(parse(kDocument)); });
    withEachFault([] {
        return isGood(parse(std::array{kDocument.substr(0, 33), kDocument.substr(33)}));
    });
}

TEST(WrapperFaults, AFileThatCannotBeRead) {
    support::FilePlan plan;
    plan.failOpen = true;
    const support::FaultyFiles files(plan);
    EXPECT_EQ(readFile("/dev/null").error().message, "cannot open the file");
}

TEST(WrapperFaults, Making) {
    withEachFault([] { return isGood(makeText("口")); });
    withEachFault([] { return isGood(makeCData("x")); });
    withEachFault([] { return isGood(makeElement("a")); });
    withEachFault([] { return isGood(makeElement("a", "b")); });
    withEachFault([] { return isGood(Document::create("a")); });
}

TEST(WrapperFaults, Converting) {
    withEachFault([] { return isGood(toUtf8("\xb6\xcb")); });
    withEachFault([] { return isGood(fromUtf8("口")); });
}

TEST(WrapperFaults, Writing) {
    const Document document = parsed(kDocument);
    withEachFault([&] { return isGood(document.write()); });
    withEachFault([&] { return isGood(document.writeTo([](std::string_view) { return true; })); });
}

// The library can do without some of what it allocates for a copy: that is the whole document or none.
template <class T, class Copy>
void expectWholeCopies(const Copy &copy) {
    const Document document = parsed(kDocument);
    std::size_t refused = 0;
    for (std::size_t at = 1; at < 1000; ++at) {
        Result<T> made = Error{XML_REFUSED, "not made yet"};
        bool failed = false;
        {
            const support::FaultyHeap heap(at);
            made = copy(document);
            failed = heap.failed();
            EXPECT_EQ(heap.blocksInUse() == 0, !isGood(made)) << "allocation " << at;
        }
        refused += !made;
        if (made) {
            EXPECT_EQ(written(Node(made->get())), written(document)) << "allocation " << at;
        }
        if (!failed) break;
    }
    EXPECT_GT(refused, 10U);
}

TEST(WrapperFaults, Copying) {
    expectWholeCopies<Document>([](const Document &document) { return document.clone(); });
    expectWholeCopies<OwnedNode>([](const Document &document) { return document.root().clone(); });
}

// Changes of the document above; each either happens or leaves it as it was.
struct Change {
    const char *name;
    Result<void> (*make)(Element root);
};
const Change kChanges[] = {
    {"replace text", [](Element root) { return root.setText("new"); }},
    {"new text", [](Element root) { return root.child("c").setText("new"); }},
    {"text in UTF-8", [](Element root) { return root.setTextUtf8("口"); }},
    {"set value", [](Element root) { return root.children().front().setValue("new"); }},
    {"replace attribute", [](Element root) { return root.setAttribute("b", "new"); }},
    {"new attribute", [](Element root) { return root.setAttribute("e", "new"); }},
    {"attribute in UTF-8", [](Element root) { return root.setAttributeUtf8("口", "端"); }},
    {"add attribute", [](Element root) { return root.addAttribute("p", "e", "new"); }},
    {"append element", [](Element root) -> Result<void> { return root.appendElement("e", "new"); }},
    {"append element in UTF-8",
     [](Element root) -> Result<void> { return root.appendElementUtf8("口", "端"); }},
    {"declare", [](Element root) { return root.declare("q", "urn:q"); }},
};

TEST(WrapperFaults, Changing) {
    for (const Change &change : kChanges) {
        SCOPED_TRACE(change.name);
        const std::string before = written(parsed(kDocument));
        for (std::size_t at = 1; at < 1000; ++at) {
            const Document document = parsed(kDocument);
            bool good = false, failed = false, failedOptionally = false;
            {
                const support::FaultyHeap heap(at);
                good = isGood(change.make(document.root()));
                failed = heap.failed();
                failedOptionally = heap.failedOptionally();
            }
            EXPECT_EQ(good, !failed || failedOptionally) << "allocation " << at;
            EXPECT_EQ(written(document) == before, !good) << "allocation " << at;
            if (!failed) break;
        }
    }
}

}  // namespace
