#include <compactxml.h>
#include <string.h>

#include "ports.h"

/* The code of what is wrong with a document; 0 for nothing. */
static uint32_t codeOf(const char *document, const SchemaRoot *schemas) {
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(document, (uint32_t)strlen(document), 0, NULL);
    SchemaErrorInfo error;
    memset(&error, 0, sizeof error);
    Schema_ValidateXml(root, schemas, &error);
    XML_DOM_DelNode(root);
    return error.code;
}

int main(void) {
    SchemaRoot schemas;
    Schema_InitRoot(&schemas);
    int good = SchemaReg_ports(&schemas) == XML_OK &&
               codeOf("<ports><port>1</port></ports>", &schemas) == 0 &&
               codeOf("<ports><port>0</port></ports>", &schemas) == 3 &&
               strcmp(Schema_PORTS_ports()->name, "ports") == 0;
    SchemaDereg_ports(&schemas);
    Schema_ExitRoot(&schemas);
    return good ? 0 : 1;
}
