// uia-reader PROGRAM: answers on its standard output, when asked on its standard input, what UI
// Automation tells of the windows of a running program, which is named by its file.
//
// A request is a line of JSON with
//
//   window  title of the windows to look at; all when it is missing
//   type    control type of the element wanted
//   name    its name; any when it is missing
//   focus   true: the element that has the keyboard, whatever its type
//   whole   true: everything in the window that has the keyboard, or is topmost
//
// The answer is a line of JSON: an array that holds what was found.

// clang-format off
#include <windows.h>
#include <initguid.h>
#include <ole2.h>
#include <uiautomation.h>
// clang-format on

#include "sandbox/standins/jsonline.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

std::string utf8(const wchar_t *text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string narrow(size > 0 ? size - 1 : 0, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

struct NodeRelease
{
    void operator()(HUIANODE node) const { UiaNodeRelease(node); }
};
using Node = std::unique_ptr<std::remove_pointer_t<HUIANODE>, NodeRelease>;

UiaCondition anyNode = {ConditionType_True};
UiaCacheRequest nodeAlone = {&anyNode, TreeScope_Element,         nullptr, 0, nullptr,
                             0,        AutomationElementMode_Full};

Node next(const Node &node, NavigateDirection direction)
{
    SAFEARRAY *found = nullptr;
    BSTR structure = nullptr;
    HUIANODE handle = nullptr;
    if (SUCCEEDED(UiaNavigate(node.get(), direction, &anyNode, &nodeAlone, &found, &structure)) &&
        found) {
        LONG first[] = {0, 0};
        VARIANT value;
        VariantInit(&value);
        if (SUCCEEDED(SafeArrayGetElement(found, first, &value)))
            UiaHUiaNodeFromVariant(&value, &handle);
        VariantClear(&value);
    }
    SafeArrayDestroy(found);
    SysFreeString(structure);
    return Node(handle);
}

/// A property of a node: null when it has none, or has gone.
Json::Value property(const Node &node, PROPERTYID id)
{
    VARIANT value;
    VariantInit(&value);
    Json::Value result;
    if (SUCCEEDED(UiaGetPropertyValue(node.get(), id, &value))) {
        switch (value.vt) {
        case VT_BSTR:
            result = utf8(value.bstrVal ? value.bstrVal : L"");
            break;
        case VT_I4:
            result = static_cast<int>(value.lVal);
            break;
        case VT_BOOL:
            result = value.boolVal != VARIANT_FALSE;
            break;
        case VT_R8 | VT_ARRAY:
            for (LONG i = 0; i < 4; ++i) {
                double number = 0;
                SafeArrayGetElement(value.parray, &i, &number);
                result.append(static_cast<int>(number));
            }
            break;
        default:
            break;
        }
    }
    VariantClear(&value);
    return result;
}

Json::Value description(const Node &node)
{
    Json::Value description;
    description["type"] = property(node, UIA_ControlTypePropertyId);
    description["name"] = property(node, UIA_NamePropertyId);
    description["enabled"] = property(node, UIA_IsEnabledPropertyId);
    description["focused"] = property(node, UIA_HasKeyboardFocusPropertyId);
    description["offscreen"] = property(node, UIA_IsOffscreenPropertyId);
    description["rectangle"] = property(node, UIA_BoundingRectanglePropertyId);
    return description;
}

/// Tells whether nodes of a type may have others in them. It saves time to ask only those.
bool mayHaveChildren(const Json::Value &type)
{
    switch (type.asInt()) {
    case UIA_ButtonControlTypeId:
    case UIA_CheckBoxControlTypeId:
    case UIA_EditControlTypeId:
    case UIA_ListItemControlTypeId:
    case UIA_RadioButtonControlTypeId:
    case UIA_TextControlTypeId:
        return false;
    default:
        return true;
    }
}

Json::Value tree(const Node &node)
{
    Json::Value result = description(node);
    Json::Value &children = result["children"] = Json::arrayValue;
    if (!mayHaveChildren(result["type"]))
        return result;
    for (Node child = next(node, NavigateDirection_FirstChild); child;
         child = next(child, NavigateDirection_NextSibling))
        children.append(tree(child));
    return result;
}

bool isWanted(const Json::Value &request, const Node &node, const Json::Value &type)
{
    // A window has the focus beside the object in it that the keyboard belongs to.
    const bool isRight =
        request["focus"].asBool()
            ? type != UIA_WindowControlTypeId &&
                  property(node, UIA_HasKeyboardFocusPropertyId) == true
            : type == request["type"] && (!request.isMember("name") ||
                                          property(node, UIA_NamePropertyId) == request["name"]);
    return isRight && property(node, UIA_IsOffscreenPropertyId) == false;
}

/// Describes the first node that is shown and wanted, the outer before the inner ones.
Json::Value first(const Json::Value &request, const Node &node)
{
    const Json::Value type = property(node, UIA_ControlTypePropertyId);
    if (isWanted(request, node, type))
        return description(node);
    if (!mayHaveChildren(type))
        return {};
    for (Node child = next(node, NavigateDirection_FirstChild); child;
         child = next(child, NavigateDirection_NextSibling)) {
        if (Json::Value found = first(request, child); !found.isNull())
            return found;
    }
    return {};
}

bool isOfProgram(HWND window, const std::wstring &program)
{
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    wchar_t path[MAX_PATH] = {};
    DWORD size = MAX_PATH;
    const bool known = process && QueryFullProcessImageNameW(process, 0, path, &size);
    CloseHandle(process);
    const wchar_t *const name = wcsrchr(path, L'\\');
    return known && name && program == name + 1;
}

/// The visible top-level windows of the program, the topmost first.
std::vector<HWND> windows(const std::wstring &program, const Json::Value &title)
{
    std::vector<HWND> all;
    EnumWindows(
        [](HWND window, LPARAM list) -> BOOL {
            reinterpret_cast<std::vector<HWND> *>(list)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&all));
    std::vector<HWND> wanted;
    for (const HWND window : all) {
        wchar_t text[256] = {};
        GetWindowTextW(window, text, 256);
        if (IsWindowVisible(window) && (title.isNull() || title == utf8(text)) &&
            isOfProgram(window, program))
            wanted.push_back(window);
    }
    return wanted;
}

Json::Value answer(const std::wstring &program, const Json::Value &request)
{
    Json::Value found = Json::arrayValue;
    for (const HWND window : windows(program, request["window"])) {
        HUIANODE handle = nullptr;
        if (FAILED(UiaNodeFromHandle(window, &handle)))
            continue; // it has gone
        const Node node(handle);
        if (request["whole"].asBool()) {
            const bool hasKeyboard = property(node, UIA_HasKeyboardFocusPropertyId) == true;
            // Under Wine a window without taskbar entry does not get the keyboard by itself.
            if (!found.empty() && !hasKeyboard)
                continue;
            found[0] = tree(node);
            if (hasKeyboard)
                break;
        } else if (const Json::Value wanted = first(request, node); !wanted.isNull()) {
            found.append(wanted);
            break;
        }
    }
    return found;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc != 2)
        return 2;
    SetProcessDPIAware(); // else rectangles are those of a display of 96 dots per inch
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    _setmode(_fileno(stdout), _O_BINARY);

    const std::unique_ptr<Json::CharReader> parser(Json::CharReaderBuilder().newCharReader());
    for (std::string line; std::getline(std::cin, line);) {
        Json::Value request;
        if (!parser->parse(line.data(), line.data() + line.size(), &request, nullptr))
            return 1;
        std::cout << jsonLine(answer(argv[1], request)) << std::flush;
    }
    return 0;
}
