// schema/trace.h - the debug trace, as the validator writes it.
#pragma once

#include <cstdint>

#include "compactxml.h"

namespace cxml {

// The one record that all validations of the process share.
struct SchemaDebugState {
    std::uint32_t indent;
    std::uint16_t enabled;  // tracing is on when 1
};
extern SchemaDebugState g_SchemaDebugState;

// Shows a node that is being checked. Costs one test while tracing is off: Schema_Debug_ShowNode would
// make its text first.
inline void traceNode(const XML_DOM_Node *node, const char *functionName) noexcept {
    if (g_SchemaDebugState.enabled == 1) Schema_Debug_ShowNode(node, functionName);
}

// Lines between these two are indented by one level more.
inline void traceInwards() noexcept {
    if (g_SchemaDebugState.enabled == 1) Schema_Debug_BlankAdd();
}
inline void traceOutwards() noexcept {
    if (g_SchemaDebugState.enabled == 1) Schema_Debug_BlankSub();
}

}  // namespace cxml
