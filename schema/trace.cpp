#include "schema/trace.h"

#include <cstdarg>
#include <cstdio>

#include "io/wrapping.h"
#include "schema/message.h"

namespace cxml {

constinit SchemaDebugState g_SchemaDebugState = {0, 0};

namespace {

constexpr std::size_t kMessageBytes = 1024;
constexpr std::size_t kPathBytes = 512;

bool isEnabled() {
    return g_SchemaDebugState.enabled == 1;
}

void startLine() {
    std::puts("\r");
    for (std::uint32_t i = 0; i < g_SchemaDebugState.indent; ++i) std::printf("  ");
}

COMPACTXML_PRINTF(1, 0)
void print(const char *format, va_list arguments) {
    char message[kMessageBytes];
    message[0] = '\0';
    std::vsnprintf(message, sizeof message, format, arguments);
    std::printf("%s", message);
}

const char *orEmpty(const char *text) {
    return text ? text : "";
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t Schema_Debug_Enable(uint32_t flag) noexcept {
    const uint32_t before = g_SchemaDebugState.enabled;
    g_SchemaDebugState.enabled = static_cast<uint16_t>(flag);
    return before;
}

COMPACTXML_WRAPS void Schema_Debug_BlankAdd(void) noexcept {
    ++g_SchemaDebugState.indent;
}

COMPACTXML_WRAPS void Schema_Debug_BlankSub(void) noexcept {
    --g_SchemaDebugState.indent;  // Intended: no lower bound
}

void Schema_Debug_ShowMsg(const char *format, ...) noexcept {
    if (!format || !isEnabled()) return;
    va_list arguments;
    va_start(arguments, format);
    print(format, arguments);
    va_end(arguments);
}

void Schema_Debug_ShowMsgLine(const char *format, ...) noexcept {
    if (!format || !isEnabled()) return;
    startLine();
    va_list arguments;
    va_start(arguments, format);
    print(format, arguments);
    va_end(arguments);
}

void Schema_Debug_ShowNode(const XML_DOM_Node *node, const char *functionName) noexcept {
    if (!node) return;
    char path[kPathBytes];
    XML_DOM_GetXPath(node, sizeof path, path);
    const char *ns = nullptr;
    XML_DOM_GetNodeNameSpace(node, nullptr, &ns);
    const char *value = orEmpty(XML_DOM_GetFirstTextChildValue(node));
    char text[kMessageBytes];
    writeMessage(text, sizeof text,
                 {"[", path, "], Value=[", beginningOf(value, sizeof text), "]"});
    if (!isEnabled()) return;
    startLine();
    std::printf("func=%s,current node=%s,ns=[%s],addr=[%lu]", orEmpty(functionName), text,
                orEmpty(ns), reinterpret_cast<unsigned long>(node));
}

void Schema_Debug_ListTopObjects(const SchemaRoot *root) noexcept {
    if (!root) return;
    Schema_Debug_ShowMsg("\r\nTop Elements count=%u\r\n", unsigned{root->elements.count});
    for (uint32_t i = 0; i < root->elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(root->elements.items[i]);
        Schema_Debug_ShowMsg("[%s][%s]\r\n", orEmpty(decl->targetNamespace), orEmpty(decl->name));
    }
}
