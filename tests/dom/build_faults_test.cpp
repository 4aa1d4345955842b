// Builds under failing memory and failing files.
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/owners.h"
#include "tests/support/texts.h"

namespace {

using support::describeTree;
using support::Feed;
using support::FilePlan;
using support::gb;
using support::NodePtr;
using support::printable;

constexpr char kUntouched[] = "as the caller left it";

// A bit of everything, long enough for the buffers to grow on the way.
std::string sample(const char *encoding) {
    std::string text =
        "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>\n" +
        "<!-- 注释 --><?target data?><!DOCTYPE 配置 [<!ENTITY a 'b'>]>\n" +
        "<p:配置 xmlns:p='空间' xmlns='urn:default' p:名='交换机' plain='&lt;一&#x4E8C;'>\n"
        "  <端口 xmlns:q='urn:q' q:速率='千兆'>一 &amp; 二<!-- c --> 三 </端口>\n"
        "  <q:a xmlns:q='urn:other'><q:b q:c='d' e='f'/><![CDATA[<数据>]]></q:a>\n"
        "  <empty xmlns=''/><![CDATA[]]><?pi?>\n";
    for (int i = 0; i < 12; ++i) {
        const std::string number = std::to_string(i);
        text += "  <vlan id='" + number + "' xml:lang='zh'><名>虚拟局域网 " + number + "</名>" +
                std::string(static_cast<std::size_t>(i) * 20, 'x') + "</vlan>\n";
    }
    text +=
        "  <long value='" + std::string(1500, 'v') + "'>" + std::string(1500, 't') + "</long>\n";
    return text + "</p:配置><!-- end -->\n";
}

// ---------------------------------------------------------------- memory

// Exhausted memory has one of these texts, or none when it ran out before the parse began.
bool tellsOfMemory(const std::string &error) {
    if (error == kUntouched || error == "Failed to initialize DOM SAX.") return true;
    if (error == "failed to convert encoding.") return true;
    return error.starts_with("The Line ") && (error.ends_with("\", memory allocation failed.") ||
                                              error.ends_with("\", internal error."));
}

void buildsUnderEveryFailure(const Feed &feed, bool persistent) {
    const std::string expected = describeTree(NodePtr(feed.build(0, nullptr)).get());
    ASSERT_TRUE(expected.starts_with("encoding "));
    for (std::size_t k = 1;; ++k) {
        char error[512];
        std::memcpy(error, kUntouched, sizeof kUntouched);
        support::FaultyHeap heap(k, persistent);
        support::FaultyFiles files({});
        XML_DOM_Node *root = feed.build(sizeof error, error);
        const bool failed = heap.failed();
        const std::size_t kept = heap.blocksInUse();
        const std::string tree = describeTree(root);
        XML_DOM_DelNode(root);
        EXPECT_EQ(heap.blocksInUse(), 0u) << k;
        EXPECT_EQ(files.openDescriptors(), 0) << k;
        if (!failed) {
            EXPECT_EQ(tree, expected);
            EXPECT_STREQ(error, kUntouched);
            EXPECT_GT(k, 100u);  // a node and a string at least for each of them
            return;
        }
        ASSERT_EQ(root, nullptr) << "a failed allocation went unnoticed: " << k;
        ASSERT_EQ(kept, 0u) << k;
        ASSERT_TRUE(tellsOfMemory(error)) << k << ": " << printable(error);
    }
}

TEST(BuildFaults, EveryAllocationFailsOnce) {
    for (const char *encoding : {"UTF-8", "GBK"}) {
        const std::string text = sample(encoding);
        const std::string document = std::string_view(encoding) == "GBK"
                                         ? support::inEncoding(XML_ENCODING_GBK, text)
                                         : text;
        for (const Feed &feed : support::mainFeeds(document)) {
            SCOPED_TRACE(std::string(encoding) + ", " + feed.name());
            buildsUnderEveryFailure(feed, false);
        }
    }
}

TEST(BuildFaults, EveryAllocationFailsFromThereOn) {
    for (const char *encoding : {"UTF-8", "GBK"}) {
        const std::string text = sample(encoding);
        const std::string document = std::string_view(encoding) == "GBK"
                                         ? support::inEncoding(XML_ENCODING_GBK, text)
                                         : text;
        for (const Feed &feed : support::mainFeeds(document)) {
            SCOPED_TRACE(std::string(encoding) + ", " + feed.name());
            buildsUnderEveryFailure(feed, true);
        }
    }
}

// Documents that are refused anyway must be so without leaks whatever fails besides.
TEST(BuildFaults, EveryAllocationFailsInDocumentsThatAreRefused) {
    for (const std::string document :
         {"<a><b x='1'>t</b><c></a>", "<a xmlns:p='u'><p:b/></a><c/>", "<a b='1' b='2'/>",
          "<a>\xFF</a>", "<!DOCTYPE a", "<a>&#x4E2D;&b;</a>"}) {
        for (const Feed &feed : support::mainFeeds(document)) {
            bool failed = true;
            for (std::size_t k = 1; failed; ++k) {
                char error[512] = "";
                support::FaultyHeap heap(k);
                EXPECT_EQ(feed.build(sizeof error, error), nullptr) << document;
                EXPECT_EQ(heap.blocksInUse(), 0u) << document << ", " << k;
                failed = heap.failed();
            }
        }
    }
}

// In the error callback memory may fail as well: the message then stays in UTF-8.
TEST(BuildFaults, AMessageThatCannotBeConvertedForWantOfMemoryStaysAsItWas) {
    const std::string document = "<a>中</b>";
    const std::string message = "The Line 1 Column 7 :\"<a>中</b>\", tag name mismatch.";
    bool converted = false;
    bool raw = false;
    bool failed = true;
    for (std::size_t k = 1; failed; ++k) {
        char error[512] = "";
        support::FaultyHeap heap(k);
        EXPECT_EQ(support::memoryFeed(document).build(sizeof error, error), nullptr);
        failed = heap.failed();
        raw |= failed && error == message;
        converted |= !failed && error == gb(message);
    }
    EXPECT_TRUE(converted);
    EXPECT_TRUE(raw);
}

// ---------------------------------------------------------------- files

struct FileBuild {
    std::string tree;
    std::string error;
    std::size_t reads = 0;
    std::size_t bytesRead = 0;
};

FileBuild buildFile(const support::TemporaryFile &file, const FilePlan &plan) {
    char error[512];
    std::memcpy(error, kUntouched, sizeof kUntouched);
    FileBuild build;
    support::FaultyHeap heap(0);
    support::FaultyFiles files(plan);
    XML_DOM_Node *root = XML_DOM_BuildTreeByFile(file.path(), sizeof error, error);
    build.reads = files.reads();
    build.bytesRead = files.bytesRead();
    EXPECT_EQ(files.openDescriptors(), 0);
    EXPECT_EQ(files.writes(), 0u);
    build.tree = describeTree(root);
    build.error = error;
    XML_DOM_DelNode(root);
    EXPECT_EQ(heap.blocksInUse(), 0u);
    return build;
}

TEST(BuildFaults, ShortReadsChangeNothing) {
    for (const std::uint32_t encoding : {XML_ENCODING_UTF_8, XML_ENCODING_GBK}) {
        const bool gbk = encoding == XML_ENCODING_GBK;
        const std::string document =
            gbk ? support::inEncoding(encoding, sample("GBK")) : sample("UTF-8");
        const support::TemporaryFile file(document);
        const FileBuild whole = buildFile(file, {});
        ASSERT_TRUE(whole.tree.starts_with("encoding ")) << whole.error;
        for (const std::size_t count : {1, 2, 3, 7, 63, 64, 65, 500, 1023}) {
            FilePlan plan;
            plan.shortCount = count;
            const FileBuild build = buildFile(file, plan);
            EXPECT_EQ(build.tree, whole.tree) << count;
            EXPECT_EQ(build.error, kUntouched) << count;
            EXPECT_GT(build.reads, document.size() / count) << count;
        }
    }
}

// What a failing read hides has ended, whether or not a document was complete before.
TEST(BuildFaults, AFailedReadIsTheEndOfTheDocument) {
    const std::string document = sample("UTF-8");
    const std::size_t rootEnds = document.rfind("</p:") + std::strlen("</p:配置>");
    const support::TemporaryFile file(document);
    for (const int error : {EIO, EINTR, 0}) {
        for (const std::size_t count : {1, 64, 100, 999}) {
            std::size_t built = 0;
            for (std::size_t k = 1; k <= document.size() / count + 2; ++k) {
                if (count == 1 && k % 37 != 1 && k + 40 < document.size()) continue;
                FilePlan plan;
                plan.shortCount = count;
                plan.failAt = k;
                plan.failErrno = error;
                const FileBuild build = buildFile(file, plan);
                EXPECT_LE(build.reads, k);  // what has ended is not asked again
                const std::size_t seen = build.bytesRead;
                // Behind the root stands a comment, in which the document must not end.
                const std::size_t comment = document.find('<', rootEnds);
                const std::size_t commentEnds = document.find("-->", comment) + 3;
                const bool whole = (seen >= rootEnds && seen <= comment) || seen >= commentEnds;
                EXPECT_EQ(build.tree.starts_with("encoding "), whole) << seen;
                EXPECT_EQ(build.error.starts_with("The Line "), !whole) << build.error;
                built += whole;
            }
            EXPECT_GT(built, 0u) << count;
        }
    }
}

// A list with the same bytes ends in the same place and with the same words.
TEST(BuildFaults, AFailedReadTellsWhatATruncatedListTells) {
    for (const std::uint32_t encoding : {XML_ENCODING_UTF_8, XML_ENCODING_GBK}) {
        const bool gbk = encoding == XML_ENCODING_GBK;
        const std::string document =
            gbk ? support::inEncoding(encoding, sample("GBK")) : sample("UTF-8");
        const support::TemporaryFile file(document);
        for (const std::size_t count : {97, 500}) {
            for (std::size_t k = 1; k <= document.size() / count + 1; ++k) {
                FilePlan plan;
                plan.shortCount = count;
                plan.failAt = k;
                plan.failErrno = EIO;
                const FileBuild build = buildFile(file, plan);
                EXPECT_LE(build.reads, k);
                char error[512];
                std::memcpy(error, kUntouched, sizeof kUntouched);
                const NodePtr tree(support::listFeed(document.substr(0, build.bytesRead))
                                       .build(sizeof error, error));
                EXPECT_EQ(build.tree, describeTree(tree.get())) << k;
                // The snippet may begin elsewhere; position and message may not differ.
                const std::string other = error;
                EXPECT_EQ(build.error.substr(0, build.error.find(":\"")),
                          other.substr(0, other.find(":\"")));
                EXPECT_EQ(build.error.substr(build.error.rfind("\", ") + 1),
                          other.substr(other.rfind("\", ") + 1));
            }
        }
    }
}

TEST(BuildFaults, AFileThatDoesNotOpen) {
    const support::TemporaryFile file("<a/>");
    FilePlan plan;
    plan.failOpen = true;
    const FileBuild build = buildFile(file, plan);
    EXPECT_EQ(build.tree, "null\n");
    EXPECT_EQ(build.error, kUntouched);
    EXPECT_EQ(build.reads, 0u);
}

TEST(BuildFaults, FilesAreReadOnlyAsFarAsNeeded) {
    const support::TemporaryFile file("<a></b>" + std::string(100000, ' '));
    const FileBuild build = buildFile(file, {});
    EXPECT_EQ(build.tree, "null\n");
    EXPECT_LT(build.reads, 10u);
}

}  // namespace
