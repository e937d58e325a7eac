// The host's own commands, registered in the same store as the modules'.
#pragma once

#include <functional>
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
    IPavoBuildInCommand* create() override { return new HostCommand(m_run); }
    void release(IPavoBuildInCommand* cmd) override { delete cmd; }
    unsigned int flags() const override { return kPavoCmdModal | kPavoCmdScriptable; }
    void addFlags(unsigned int, bool) override {}
    const wchar_t* module() const override { return L"pavo"; }
    const wchar_t* globalName() const override { return m_name.c_str(); }
    const wchar_t* localName() const override { return m_name.c_str(); }
    const wchar_t* description() const override { return m_description.c_str(); }

private:
    std::wstring m_name, m_description;
    std::function<int()> m_run;
};

// Registers OPEN, NEW, SAVE, SAVEAS, QUIT, SETVAR, HELP and INITDIA.
void registerHostCommands(Session& session, std::vector<std::unique_ptr<HostCommandFactory>>& owned);

} // namespace pavo::app
