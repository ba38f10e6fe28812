// screenshot: a picture of a window, as the screen shows it.
#include <filesystem>
#include <string>
#include <vector>

#include "common/CaseBlind.h"
#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/kernel/sync.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

/// A screen that has just been started is waited for so long.
constexpr DWORD PATIENCE_MILLISECONDS = 10'000;
constexpr DWORD STEP_MILLISECONDS = 50;

/// Lists are read from their programs, which may be stopped or busy: then the picture is of what
/// there is after this time.
constexpr DWORD READING_MILLISECONDS = 1000;
constexpr DWORD READING_STEP_MILLISECONDS = 10;

struct Options {
    std::string file;
    std::string title;
};

HWND awaitScreen() {
    const DWORD start = GetTickCount();
    while (FindScreen() == 0 && EnsureScreen() && GetTickCount() - start < PATIENCE_MILLISECONDS) {
        AwaitViewChange(ViewChangeCount(), STEP_MILLISECONDS);
    }
    return FindScreen();
}

HWND visibleWindow(const std::string& title) {
    const auto windows = ViewWindows();
    for (const ViewedWindow& viewed : windows.value_or(std::vector<ViewedWindow>())) {
        if (viewed.parent == 0 && equalCaseBlind(viewed.text, title)) {
            return viewed.window;
        }
    }
    return 0;
}

LRESULT savePicture(HWND screen, HWND window, const std::string& file) {
    const DWORD start = GetTickCount();
    while (SendMessageA(screen, VIEW_IS_COMPLETE, window, 0) == 0 &&
           GetTickCount() - start < READING_MILLISECONDS) {
        Sleep(READING_STEP_MILLISECONDS);
    }
    return SendMessageA(screen, VIEW_SAVE_PICTURE, window, reinterpret_cast<LPARAM>(file.c_str()));
}

std::string complaintAbout(LRESULT result, const Options& options) {
    switch (result) {
        case PICTURE_NO_WINDOW:
            return options.title.empty()
                       ? "no window is to be seen"
                       : "no visible window has the title \"" + options.title + "\"";
        case PICTURE_NO_FILE:
            return "\"" + options.file + "\" could not be written";
        default:
            return "the screen did not answer";
    }
}

int run(const Options& options) {
    const HWND screen = awaitScreen();
    if (screen == 0) {
        complain(
            "no screen shows this desktop: it takes a display (DISPLAY or WAYLAND_DISPLAY), "
            "and JUNTORA_SCREEN must not be \"none\"");
        return EXIT_CODE_REFUSED;
    }
    const HWND window = options.title.empty() ? 0 : visibleWindow(options.title);
    // The screen has a current directory of its own.
    const std::string file = std::filesystem::absolute(options.file).string();
    const LRESULT result = window == 0 && !options.title.empty()
                               ? LRESULT{PICTURE_NO_WINDOW}
                               : savePicture(screen, window, file);
    if (result == PICTURE_SAVED) {
        return EXIT_CODE_DONE;
    }
    complain(complaintAbout(result, options));
    return EXIT_CODE_REFUSED;
}

}  // namespace

void addScreenshotCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "screenshot", "Save a picture of a window as a PNG", options, run, action);
    command->add_option("FILE", options->file, "The file to write")->required();
    command->add_option("--window", options->title,
                        "The window's title; the one in front if none is given");
}

}  // namespace juntora
