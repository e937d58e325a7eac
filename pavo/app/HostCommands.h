// The host's own commands, registered in the same store as the modules'.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <memory>
#include <string>
#include <vector>

#include "IPavoCommand.h"

namespace pavo::app {

class Session;

class HostCommand final : public IPavoBuildInCommand {
public:
    explicit HostCommand(std::function<int()> run) : m_run(std::move(run)) {}
    int execute(IPavoBuildInCommandContext*) override { return m_run(); }

private:
    std::function<int()> m_run;
};

class HostCommandFactory final : public IPavoCommandFactory {
public:
    HostCommandFactory(std::wstring name, std::wstring description, std::function<int()> run)
        : m_name(std::move(name)), m_description(std::move(description)), m_run(std::move(run)) {}
    ~HostCommandFactory() = default;
    IPavoBuildInCommand* create() override {
        if (m_argument.empty()) return new HostCommand(m_run);
        auto run = [runner = m_runWithArgument, argument = std::move(m_argument)] { return runner(argument); };
        m_argument.clear();
        return new HostCommand(run);
    }
    void release(IPavoBuildInCommand* cmd) override { delete cmd; }
    unsigned int flags() const override { return kPavoCmdModal | kPavoCmdScriptable; }
    void addFlags(unsigned int, bool) override {}
    const wchar_t* module() const override { return L"pavo"; }
    const wchar_t* globalName() const override { return m_name.c_str(); }
    const wchar_t* localName() const override { return m_name.c_str(); }
    const wchar_t* description() const override { return m_description.c_str(); }

    // Commands that take the rest of the line typed at "Command: " ("HELP
    // TOPIC"): the next run gets `argument`.
    void setArgumentRunner(std::function<int(const std::wstring&)> run) { m_runWithArgument = std::move(run); }
    bool takesArgument() const { return static_cast<bool>(m_runWithArgument); }
    void setArgument(std::wstring argument) { m_argument = std::move(argument); }

private:
    std::wstring m_name, m_description;
    std::function<int()> m_run;
    std::function<int(const std::wstring&)> m_runWithArgument;
    std::wstring m_argument;
};

// A Yes/No question; Enter gives `defaultYes`; nothing when cancelled.
std::optional<bool> askYesNo(const std::wstring& prompt, bool defaultYes);
// True when nothing is at `path`, or the user agrees to replace it.
bool mayReplace(const std::filesystem::path& path);

// Offers to save the drawing's changes before it goes (QUIT, OPEN, NEW,
// the end of input at a terminal). True when it may go: it had no changes,
// they were saved, or the user said No.
bool offerToSave(Session& session);

// Registers OPEN, NEW, SAVE, SAVEAS, QUIT, SETVAR, HELP and INITDIA.
void registerHostCommands(Session& session, std::vector<std::unique_ptr<HostCommandFactory>>& owned);

} // namespace pavo::app
