// What is said of an error in a document.
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "compactxml.h"
#include "schema/message.h"

namespace cxml {
namespace {

constexpr std::size_t kPathBytes = 512;
constexpr uint32_t kLeastSize = 512;

// Missing parts are printed as nothing.
std::string_view shown(const char *text) {
    return text ? std::string_view(text) : std::string_view();
}

// The message of one error in the making.
class ErrorMessage {
  public:
    ErrorMessage(const SchemaErrorInfo &error, uint32_t size, char *buffer)
        : error_(error), size_(size), buffer_(buffer) {
        if (error.node) XML_DOM_GetXPath(error.node, sizeof path_, path_);
    }

    bool write();

  private:
    // Of the record no more is read than the message needs: the rest may be stale.
    std::string_view name() const { return shown(error_.name); }
    std::string_view ns() const { return shown(error_.ns); }
    std::string_view attrName() const { return shown(error_.attrName); }
    std::string_view attrNs() const { return shown(error_.attrNs); }
    std::string_view text() const { return beginningOf(error_.text, sizeof error_.text); }
    bool hasAttrNs() const { return !attrNs().empty(); }

    void put(std::initializer_list<std::string_view> pieces) {
        writeMessage(buffer_, size_, pieces);
    }
    void putUnexpectedElement();

    const SchemaErrorInfo &error_;
    uint32_t size_;
    char *buffer_;
    char path_[kPathBytes] = "";
};

void ErrorMessage::putUnexpectedElement() {
    const char *ns = nullptr;
    XML_DOM_GetNodeNameSpace(error_.node, nullptr, &ns);
    put({"Unexpected element '", shown(ns), "':'", shown(XML_DOM_GetNodeName(error_.node)),
         "' under element '", path_, "'."});
    // Intended: cut at the last slash, which leaves the path of the parent and no end of a sentence.
    if (char *slash = std::strrchr(buffer_, '/')) *slash = '\0';
}

// False for a code that no error has.
bool ErrorMessage::write() {
    switch (error_.code) {
        case 0:
            break;
        case 1:
            put({"Expecting element '", ns(), "':'", name(), "' under element '", path_, "'."});
            break;
        case 2:
            if (hasAttrNs()) {
                put({"The element '", path_, "' should have an attribute '", attrNs(), "':'",
                     attrName(), "'."});
            } else {
                put({"The element '", path_, "' should have an attribute '", attrName(), "'."});
            }
            break;
        case 3:
            put({"The value of element '", path_, "' is invalid. ", text()});
            break;
        case 4:
            if (hasAttrNs()) {
                put({"The value of attribute '", attrNs(), "':'", attrName(), "' for element '",
                     path_, "' is invalid. ", text()});
            } else {
                put({"The value of attribute '", attrName(), "' for element '", path_,
                     "' is invalid. ", text()});
            }
            break;
        case 5:
            put({"The number of occurrences of element '", path_, "/", name(), "' is invalid."});
            break;
        case 6:
            putUnexpectedElement();
            break;
        case 7:
            if (hasAttrNs()) {
                put({"Unexpected attribute '", attrNs(), "':'", attrName(), "' of element '", path_,
                     "'."});
            } else {
                put({"Unexpected attribute '", attrName(), "' of element '", path_, "'."});
            }
            break;
        case 8:
            put({"The child elements of '", path_, "' are invalid."});
            break;
        case 9:
            put({"Element '", path_, "' can not have a textual child element."});
            break;
        case 10:
            put({"Element '", path_, "' can not have a child element."});
            break;
        case 11:
            put({"Required child elements are missing for element '", path_, "'."});
            break;
        case 12:
            put({"The root element of XML document is invalid."});
            break;
        default:
            return false;
    }
    return true;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t Schema_GetErrorDesc(const SchemaErrorInfo *errorInfo, uint32_t size,
                             char *buffer) noexcept {
    if (!errorInfo || !buffer || size < kLeastSize) return XML_REFUSED;
    return ErrorMessage{*errorInfo, size, buffer}.write() ? XML_OK : XML_REFUSED;
}
