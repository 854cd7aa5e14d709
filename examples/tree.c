// Prints all features of a camera as a tree, with their values and what they are for.
#include "OvINodes.h"
#include "example.h"

static void PrintFeature(OV_NODE_HANDLE node, int depth) {
    char name[128];
    char help[256];
    char value[1024];
    size_t size = sizeof name;
    Check(OvNodeGetText(node, OV_NODE_TEXT_NAME, name, &size), "name");
    size = sizeof help;
    if (OvNodeGetText(node, OV_NODE_TEXT_TOOL_TIP, help, &size) != OV_STATUS_SUCCESS) {
        help[0] = 0;
    }
    size = sizeof value;
    // A feature that can't be read now, or is too long to print, has no value here.
    if (OvNodeGetAsText(node, value, &size) != OV_STATUS_SUCCESS) {
        strcpy(value, "-");
    }
    printf("%*s%s = %s  (%s)\n", 2 * depth, "", name, value, help);
}

static void PrintCategory(OV_NODE_HANDLE category, int depth) {
    char name[128];
    size_t size = sizeof name;
    size_t number = 0;
    OV_NODE_HANDLE* nodes = NULL;
    Check(OvNodeGetText(category, OV_NODE_TEXT_NAME, name, &size), "name");
    printf("%*s%s\n", 2 * depth, "", name);
    Check(OvNodeGetRelated(category, OV_NODE_RELATION_FEATURES, NULL, &number), "number");
    nodes = calloc(number + 1, sizeof *nodes);
    if (nodes == NULL) {
        return;
    }
    Check(OvNodeGetRelated(category, OV_NODE_RELATION_FEATURES, nodes, &number), "content");
    for (size_t i = 0; i < number; ++i) {
        OV_NODE_INFO info;
        Check(OvNodeGetInfo(nodes[i], &info), "info");
        if (info.type == OV_NODE_TYPE_CATEGORY) {
            PrintCategory(nodes[i], depth + 1);
        } else if (info.access != OV_NODE_ACCESS_NOT_IMPLEMENTED) {
            PrintFeature(nodes[i], depth + 1);
        }
    }
    free(nodes);
}

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    OV_NODE_HANDLE root = 0;
    Check(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Root", &root), "Root");
    PrintCategory(root, 0);
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
