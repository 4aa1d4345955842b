/* A schema of constant records in C, as a compiler writes them, with every feature of the validator. */
#ifndef FEATURE_SCHEMA_H
#define FEATURE_SCHEMA_H

#include "compactxml.h"

#ifdef __cplusplus
extern "C" {
#endif

extern const SchemaTopObject featureSchema[];
extern const uint32_t featureSchemaCount;

#ifdef __cplusplus
}
#endif

#endif
