// The progress panel in Win32.
//
// The host's message loop does not run while the panel is open, so everything that changes is painted at
// once, and messages are looked at now and then lest the system takes the program for a hung one.

#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include <string>
#include <string_view>

#include "platform/progress.h"

namespace {

constexpr wchar_t className[] = L"KestrinProgress";
constexpr COLORREF background = RGB(38, 38, 38);
constexpr COLORREF groove = RGB(70, 70, 70);
constexpr COLORREF filled = RGB(70, 140, 230);
constexpr COLORREF white = RGB(255, 255, 255);

std::wstring wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring text(utf8.size(), L'\0');  // never more units than bytes
    text.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), size)));
    return text;
}

// Messages name the Command key; keyboards here call it Ctrl.
std::wstring withLocalKeyNames(std::wstring message) {
    constexpr std::wstring_view command = L"Command";
    for (auto at = message.find(command); at != std::wstring::npos; at = message.find(command, at)) {
        message.replace(at, command.size(), L"Ctrl");
    }
    return message;
}

// The module that this code is a part of, which is not the program.
HINSTANCE thisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       className, &module);
    return module;
}

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_CTLCOLORSTATIC) {
        const auto context = reinterpret_cast<HDC>(first);
        SetTextColor(context, white);
        SetBkColor(context, background);
        return static_cast<LRESULT>(GetClassLongPtrW(window, GCLP_HBRBACKGROUND));
    }
    return DefWindowProcW(window, message, first, second);
}

HFONT newMessageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

// Pixels for a length at 96 dots per inch.
int scaled(int length) {
    return MulDiv(length, static_cast<int>(GetDpiForSystem()), USER_DEFAULT_SCREEN_DPI);
}

HWND newWindow(const std::wstring& title) {
    constexpr DWORD style = WS_POPUP | WS_CAPTION;
    RECT frame{0, 0, scaled(300), scaled(120)};
    AdjustWindowRectEx(&frame, style, FALSE, 0);
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    return CreateWindowExW(0, className, title.c_str(), style, (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                           (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, GetActiveWindow(),
                           nullptr, thisModule(), nullptr);
}

HWND newChild(HWND window, const wchar_t* kind, const std::wstring& text, DWORD style, RECT frame) {
    return CreateWindowExW(0, kind, text.c_str(), WS_CHILD | WS_VISIBLE | style, scaled(frame.left),
                           scaled(frame.top), scaled(frame.right - frame.left),
                           scaled(frame.bottom - frame.top), window, nullptr, thisModule(), nullptr);
}

// Paints, and asks for a message of a kind that nobody sends: to have asked is what counts.
void paintNow(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    MSG message;
    PeekMessageW(&message, window, WM_APP, WM_APP, PM_NOREMOVE);
}

}  // namespace

namespace platform {

struct ProgressPanel::Panel {
    Panel(const char* title, const char* message) : font(newMessageFont()) {
        const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_PROGRESS_CLASS};
        InitCommonControlsEx(&controls);
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = handleMessage;
        description.hInstance = thisModule();
        description.hCursor = LoadCursor(nullptr, IDC_ARROW);
        description.hbrBackground = CreateSolidBrush(background);  // the class owns it
        description.lpszClassName = className;
        RegisterClassExW(&description);

        window = newWindow(wide(title));
        if (window == nullptr) {
            return;
        }
        bar = newChild(window, PROGRESS_CLASSW, L"", PBS_SMOOTH, {20, 30, 280, 40});
        // No theme has this name: a themed bar glides to a value instead of showing it, in its own colours.
        SetWindowTheme(bar, L" ", L" ");
        SendMessageW(bar, PBM_SETRANGE32, 0, 100);
        SendMessageW(bar, PBM_SETBARCOLOR, 0, filled);
        SendMessageW(bar, PBM_SETBKCOLOR, 0, groove);
        const HWND text =
            newChild(window, L"STATIC", withLocalKeyNames(wide(message)), SS_NOPREFIX, {20, 55, 280, 85});
        SendMessageW(text, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);

        ShowWindow(window, SW_SHOW);
        paintNow(window);
    }
    ~Panel() {
        DestroyWindow(window);
        UnregisterClassW(className, thisModule());
        DeleteObject(font);
    }
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    HFONT font;
    HWND window = nullptr;
    HWND bar = nullptr;
};

ProgressPanel::ProgressPanel(const SPBasicSuite*, const char* title, const char* message)
    : panel_(std::make_unique<Panel>(title, message)) {
    if (panel_->window == nullptr) {
        panel_.reset();
    }
}

ProgressPanel::~ProgressPanel() = default;

void ProgressPanel::show(int percent) noexcept {
    if (panel_ == nullptr) {
        return;
    }
    SendMessageW(panel_->bar, PBM_SETPOS, static_cast<WPARAM>(percent), 0);
    paintNow(panel_->window);
}

}  // namespace platform
