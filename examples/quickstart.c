#include <compactxml.h>
#include <stdio.h>
#include <stdlib.h>

int main(void) {
    static const char document[] = "<switch><port name=\"1/0/1\" vlan=\"10\"/></switch>";
    char error[256] = "", *text = NULL;
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(document, sizeof document - 1, sizeof error, error);
    XML_DOM_Node *port = XML_DOM_GetFirstChild(root);
    if (!port) return fprintf(stderr, "%s\n", error), EXIT_FAILURE;
    printf("port %s, VLAN %s\n", XML_DOM_GetNodeAttrValByName(port, "name"),
           XML_DOM_GetNodeAttrValByName(port, "vlan"));
    XML_DOM_AddChildNode(port, XML_DOM_CreateElementWithText("mtu", "9216"));
    if (XML_DOM_TranslateStr(root, 0, &text, NULL) == XML_OK) puts(text);
    free(text);
    XML_DOM_DelNode(root);
    return EXIT_SUCCESS;
}
