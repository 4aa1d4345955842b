/* switchd - keeps the configuration of a switch, and takes another one only if it is valid.
 *
 *   switchd run FILE    reads the configuration and waits for requests in the background
 *   switchd get PATH    asks for a value, such as "hostname"
 *   switchd vlans       asks for all VLANs
 *   switchd load FILE   hands over another configuration
 *   switchd stop        ends it
 */
#define _DEFAULT_SOURCE /* daemon() */
#include <compactxml.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "device.h" /* made by xsd2c of device.xsd */

static const struct sockaddr_un kAddress = {.sun_family = AF_UNIX, .sun_path = "switchd.socket"};

struct Switch {
    SchemaRoot schemas;
    XML_DOM_Node *config;
};

/* [load] */
/* Reads a configuration and validates it. Null if it is not valid; the answer says why. */
static XML_DOM_Node *load(const SchemaRoot *schemas, const char *path, XML_IO_OutStream *answer) {
    char message[1024] = "cannot open the file";
    XML_DOM_Node *root = XML_DOM_BuildTreeByFile(path, sizeof message, message);
    if (root) {
        SchemaErrorInfo error;
        if (Schema_ValidateXml(root, schemas, &error) != XML_OK) {
            snprintf(message, sizeof message, "memory exhausted");
        } else if (error.code == 0) {
            return root;
        } else {
            Schema_GetErrorDesc(&error, sizeof message, message);
        }
        XML_DOM_DelNode(root);
    }
    XML_IO_OutStreamAppendString(answer, message);
    return NULL;
}
/* [load end] */

/* [query] */
static void listVlans(const XML_DOM_Node *config, XML_IO_OutStream *answer) {
    const XML_DOM_Node *node = XML_DOM_GetFirstChild(config);
    for (; node; node = XML_DOM_GetNextSibling(node)) {
        if (strcmp(XML_DOM_GetNodeName(node), "vlan") != 0) continue;
        XML_IO_OutStreamAppendString(answer, XML_DOM_GetNodeAttrValByName(node, "id"));
        XML_IO_OutStreamAppendString(answer, " ");
        XML_IO_OutStreamAppendString(answer, XML_DOM_GetSelectSingleNodeText(node, "name"));
        XML_IO_OutStreamAppendString(answer, "\n");
    }
}

/* Does what a request asks for. A tree holds GB18030, and so does what is put into the answer. */
static void handle(struct Switch *device, char *request, XML_IO_OutStream *answer) {
    char *argument = request + strcspn(request, " ");
    if (*argument) *argument++ = '\0';
    if (strcmp(request, "get") == 0) {
        const char *value = XML_DOM_GetSelectSingleNodeText(device->config, argument);
        XML_IO_OutStreamAppendString(answer, value ? value : "nothing there");
    } else if (strcmp(request, "vlans") == 0) {
        listVlans(device->config, answer);
    } else if (strcmp(request, "load") == 0) {
        XML_DOM_Node *config = load(&device->schemas, argument, answer);
        if (!config) return; /* the old one stays */
        XML_DOM_DelNode(device->config);
        device->config = config;
        XML_IO_OutStreamAppendString(answer, "loaded");
    } else if (strcmp(request, "stop") == 0) {
        unlink(kAddress.sun_path); /* another one may start when this is answered */
    } else {
        XML_IO_OutStreamAppendString(answer, "no such request");
    }
}
/* [query end] */

/* Takes one request, which is one packet, and answers it. Returns 0 when it was the last. */
static int serveOne(struct Switch *device, int listener) {
    char request[1024];
    int client = accept(listener, NULL, NULL);
    ssize_t length = recv(client, request, sizeof request - 1, 0);
    if (length > 0) {
        request[length] = '\0';
        XML_IO_OutStream *answer =
            XML_IO_MemOutStreamCreate(XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
        handle(device, request, answer);
        uint32_t size = 0;
        const char *text = XML_IO_MemOutStreamGetBuf(answer, &size);
        send(client, text ? text : "", size, MSG_NOSIGNAL);
        XML_IO_OutStreamDestroy(answer);
    }
    close(client);
    return length <= 0 || strcmp(request, "stop") != 0;
}

static int serve(struct Switch *device) {
    int listener = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    unlink(kAddress.sun_path); /* of one that was killed */
    if (bind(listener, (const struct sockaddr *)&kAddress, sizeof kAddress) != 0 ||
        listen(listener, 8) != 0 || daemon(1, 0) != 0) {
        perror("switchd");
        return EXIT_FAILURE;
    }
    while (serveOne(device, listener)) {
    }
    close(listener);
    return EXIT_SUCCESS;
}

/* [run] */
static int run(const char *path) {
    struct Switch device;
    Schema_InitRoot(&device.schemas);
    if (SchemaReg_device(&device.schemas) != XML_OK) return EXIT_FAILURE;
    XML_IO_OutStream *answer = XML_IO_MemOutStreamCreate(XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
    device.config = load(&device.schemas, path, answer);
    int status = EXIT_FAILURE;
    if (device.config) {
        status = serve(&device);
    } else {
        const char *text = XML_IO_MemOutStreamGetBuf(answer, NULL);
        fprintf(stderr, "%s: %s\n", path, text ? text : "");
    }
    XML_IO_OutStreamDestroy(answer);
    XML_DOM_DelNode(device.config);
    SchemaDereg_device(&device.schemas);
    Schema_ExitRoot(&device.schemas);
    return status;
}
/* [run end] */

/* Sends a request to the one that runs and prints the answer. */
static int ask(const char *verb, const char *argument) {
    char request[1024];
    static char answer[65536];
    int length = snprintf(request, sizeof request, "%s %s", verb, argument ? argument : "");
    if (length >= (int)sizeof request) {
        fprintf(stderr, "switchd: the request is too long\n");
        return EXIT_FAILURE;
    }
    int server = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    if (connect(server, (const struct sockaddr *)&kAddress, sizeof kAddress) != 0 ||
        send(server, request, (size_t)length, MSG_NOSIGNAL) != length) {
        perror("switchd");
        return EXIT_FAILURE;
    }
    ssize_t size = recv(server, answer, sizeof answer, 0);
    if (size > 0) {
        fwrite(answer, 1, (size_t)size, stdout);
        if (answer[size - 1] != '\n') putchar('\n');
    }
    close(server);
    return EXIT_SUCCESS;
}

int main(int argc, char **argv) {
    if (argc == 3 && strcmp(argv[1], "run") == 0) return run(argv[2]);
    if (argc == 2 || argc == 3) return ask(argv[1], argv[2]);
    fprintf(stderr, "usage: switchd run FILE | get PATH | vlans | load FILE | stop\n");
    return EXIT_FAILURE;
}
