#include "markup.h"

#include <stdexcept>
#include <string>

namespace examples {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

class Scan {
  public:
    explicit Scan(std::string_view text) : text_(text) {}

    std::vector<ElementMarkup> run() {
        while ((at_ = text_.find('<', at_)) != std::string_view::npos) {
            if (!skip("<!--", "-->") && !skip("<![CDATA[", "]]>") && !skip("<?", "?>")) tag();
        }
        if (!open_.empty() || elements_.empty()) fail("no element, or one that does not end");
        return std::move(elements_);
    }

  private:
    [[noreturn]] void fail(const char *what) const {
        throw std::runtime_error("offset " + std::to_string(at_) + ": " + what);
    }

    bool startsWith(std::string_view start) const { return text_.substr(at_).starts_with(start); }

    // Moves behind the next place where one of these characters stands.
    std::size_t find(std::string_view characters) const {
        const std::size_t found = text_.find_first_of(characters, at_);
        if (found == std::string_view::npos) fail("a tag that does not end");
        return found;
    }

    bool skip(std::string_view start, std::string_view end) {
        if (!startsWith(start)) return false;
        const std::size_t found = text_.find(end, at_ + start.size());
        if (found == std::string_view::npos) fail("a section that does not end");
        at_ = found + end.size();
        return true;
    }

    void skipBlanks() {
        at_ = text_.find_first_not_of(kBlanks, at_);
        if (at_ == std::string_view::npos) at_ = text_.size();
    }

    void tag() {
        if (startsWith("</")) {
            endTag();
        } else {
            startTag();
        }
    }

    void endTag() {
        if (open_.empty()) fail("an end tag without a start tag");
        ElementMarkup &element = elements_[open_.back()];
        open_.pop_back();
        element.contentEnd = at_;
        at_ = element.end = find(">") + 1;
    }

    void startTag() {
        ElementMarkup element;
        element.begin = at_;
        element.parent = open_.empty() ? ElementMarkup::kNone : open_.back();
        at_ = element.nameEnd = find(" \t\r\n/>");
        for (skipBlanks(); !startsWith(">") && !startsWith("/>"); skipBlanks()) {
            element.attributes.push_back(attribute());
        }
        element.isEmptyTag = startsWith("/>");
        at_ += element.isEmptyTag ? 2 : 1;
        element.tagEnd = element.contentEnd = element.end = at_;
        if (!element.isEmptyTag) open_.push_back(elements_.size());
        elements_.push_back(std::move(element));
    }

    AttributeMarkup attribute() {
        AttributeMarkup attribute{};
        attribute.begin = at_;
        at_ = attribute.nameEnd = find(" \t\r\n=");
        at_ = find("\"'");
        attribute.valueBegin = at_ + 1;
        const std::string_view quote = text_.substr(at_++, 1);
        attribute.valueEnd = find(quote);
        at_ = attribute.valueEnd + 1;
        return attribute;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<ElementMarkup> elements_;
    std::vector<std::size_t> open_;
};

}  // namespace

std::vector<ElementMarkup> elementsOf(std::string_view document) {
    return Scan(document).run();
}

}  // namespace examples
