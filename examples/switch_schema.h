/* The schema of the example configuration, compiled by hand. */
#ifndef SWITCH_SCHEMA_H
#define SWITCH_SCHEMA_H

#include <compactxml.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Registers the schema with a root; 0 on success. */
uint32_t registerSwitchSchema(SchemaRoot *root);
void deregisterSwitchSchema(SchemaRoot *root);

#ifdef __cplusplus
}
#endif

#endif
