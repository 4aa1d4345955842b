// schema/content_model.h - matches the children of an element with the content model of its type.
#pragma once

#include "compactxml.h"
#include "schema/element_match.h"
#include "schema/validation.h"

namespace cxml {

struct GroupFrame;

}  // namespace cxml

// Where the matching of one element's children stands.
struct SchemaContentCursor {
    XML_DOM_Node *parent;
    const XML_DOM_NsDecl *defaultNs;  // in scope below the parent
    cxml::ElementName current;        // the next element child to be matched
    const cxml::GroupFrame *frames;   // the open groups, innermost first
    bool sawText;                     // among the children before the current one
};

namespace cxml {

// Matches the children of an element of a complex type, by their names alone, and its text with
// simple content. What has been taken is appended to run.matched, each child with its declaration.
// Errors are left in the context, and then run is not valid; what was taken before stays.
void Schema_CheckComplexContent(SchemaContentCursor &cursor, const SchemaComplexType &type,
                                Validation &run) noexcept;

// Makes the next element from a node on the current one.
void setCurrent(SchemaContentCursor &cursor, XML_DOM_Node *node) noexcept;

}  // namespace cxml
