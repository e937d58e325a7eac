// pavo: a drafting shell for the terminal.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>

#include "app/Pictures.h"
#include "app/Session.h"
#include "base/Utf8.h"
#include "editor/Input.h"
#include "files/FileRead.h"
#include "files/UserPath.h"

namespace fs = std::filesystem;
using pavo::app::ExitCode;

int main(int argc, char** argv) {
    CLI::App cli{"pavo: a drafting shell for layers, in the terminal"};
    std::string drawing, script;
    bool newDrawing = false, noDialogs = false;
    std::string plotFile, exportFile, layout;
    pavo::app::BatchPicture picture;
    cli.add_option("DRAWING", drawing, "Drawing file to open (the sample drawing when none is given)");
    cli.add_flag("--new", newDrawing, "Start an empty drawing instead of the sample");
    cli.add_option("--script", script, "Read the answers from FILE, one line each, and echo them");
    cli.add_flag("--no-dialogs", noDialogs, "Never show dialogs; commands use their command-line forms");
    CLI::Option* plotOption =
        cli.add_option("--plot", plotFile, "Plot the drawing to OUT.pdf or OUT.png (after the script, if any) and exit");
    CLI::Option* exportOption = cli.add_option(
        "--export", exportFile, "Write a picture of the drawing to OUT.png, OUT.svg or OUT.pdf (after the script) and exit");
    plotOption->excludes(exportOption);
    cli.add_option("--layout", layout, "With --plot or --export: the layout to show (Model for model space)");
    cli.add_option("--dpi", picture.dotsPerInch, "With --plot to PNG: dots per inch (default 150)")
        ->check(CLI::Range(10, 2400));
    cli.add_option("--width", picture.widthPixels, "With --export: the picture's width in pixels (default 1600)")
        ->check(CLI::Range(16, 20000));
    cli.set_version_flag("--version", std::string("pavo ") + PAVO_VERSION);
    cli.footer("Exit status: 0 success, 1 bad options, 2 the drawing cannot be read, 3 the script ended inside a "
               "command, 4 internal error, 5 a module could not be loaded, 6 a save failed, 7 the picture was not written.");
    try {
        cli.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return cli.exit(e) == 0 ? ExitCode::kExitOk : ExitCode::kExitUsage;
    }
    if (newDrawing && !drawing.empty()) {
        std::cerr << "pavo: give either a drawing or --new, not both\n";
        return ExitCode::kExitUsage;
    }

    const bool batchPicture = !plotFile.empty() || !exportFile.empty();
    if (!layout.empty() && !batchPicture) {
        std::cerr << "pavo: --layout goes with --plot or --export\n";
        return ExitCode::kExitUsage;
    }

    std::unique_ptr<pavo::editor::InputSource> input;
    pavo::app::SessionOptions options =
        pavo::app::defaultSessionOptions(pavo::app::runningExecutable(argc > 0 ? argv[0] : nullptr));
    options.noDialogs = noDialogs;
    if (!script.empty()) {
        std::string problem;
        std::unique_ptr<std::istream> stream = pavo::files::openScript(script, problem);
        if (!stream) {
            std::cerr << "pavo: cannot read the script " << script << ": " << problem << "\n";
            return ExitCode::kExitUsage;
        }
        input = pavo::editor::makeScriptInput(std::move(stream), script);
    } else if (batchPicture) {
        // A batch reads nothing: the picture is all it does.
        input = pavo::editor::makeScriptInput(std::make_unique<std::istringstream>(), "no input");
    } else if (!isatty(STDIN_FILENO)) {
        input = pavo::editor::makeScriptInput(
            std::unique_ptr<std::istream>(new std::istream(std::cin.rdbuf())), "standard input");
    } else {
        input = pavo::editor::makeTerminalInput(options.historyFile);
    }

    pavo::app::Session session(std::move(options), std::move(input), std::cout, &std::cerr);
    // The module's commands are the reason pavo is started: without them a
    // script would run on to wrong answers.
    if (!session.loadModules()) return ExitCode::kExitModuleNotLoaded;
    if (!drawing.empty()) {
        if (!session.openDrawing(pavo::files::drawingToOpen(fs::path(drawing)))) return ExitCode::kExitBadDrawing;
    } else if (newDrawing) {
        session.newDrawing();
    } else if (!session.openSample()) {
        return ExitCode::kExitInternalError;
    }
    if (!batchPicture) {
        const int status = session.run();
        session.leaveDrawingToProcessEnd();
        return status;
    }
    if (!script.empty()) {
        const int status = session.run();
        if (status != ExitCode::kExitOk) return status;
    }
    picture.plot = !plotFile.empty();
    picture.path = pavo::files::userPath(pavo::fromUtf8(picture.plot ? plotFile : exportFile)).value_or(fs::path());
    if (!layout.empty()) picture.layout = pavo::fromUtf8(layout);
    std::wstring done, error;
    if (!pavo::app::writeBatchPicture(session, picture, done, error)) {
        std::cerr << "pavo: " << picture.path.string() << " was not written: " << pavo::toUtf8(error) << "\n";
        return ExitCode::kExitPictureFailed;
    }
    std::cout << pavo::toUtf8(done) << "\n";
    return ExitCode::kExitOk;
}
