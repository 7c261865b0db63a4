// The manual page, written from the option table.
#include "ManPage.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace lumofe {
namespace {

// Text as roff reads it: dashes that can be copied, nothing taken for a request.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    }
    return result;
}

std::string line(const std::string& text)
{
    const bool request = text.starts_with('.') || text.starts_with('\'');
    return (request ? "\\&" : "") + escaped(text) + "\n";
}

std::string bold(const std::string& text)
{
    return std::string("\\fB").append(escaped(text)).append("\\fP");
}

std::string italic(const std::string& text)
{
    return std::string("\\fI").append(escaped(text)).append("\\fP");
}

std::string upper(std::string text)
{
    for (char& c : text)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::size_t indentOf(const std::string& text)
{
    return std::min(text.find_first_not_of(' '), text.size());
}

// Its lines are joined: roff breaks them anew.
std::string filled(const std::string& text)
{
    std::string result;
    std::istringstream lines(text);
    for (std::string one; std::getline(lines, one);)
        result += line(one);
    return result;
}

// "-o, --output FILE", or "INPUT..."
std::string synopsis(const ArgumentHelp& argument)
{
    std::ostringstream result;
    for (const std::string& name : argument.names) {
        if (&name != &argument.names.front()) result << ", ";
        result << (argument.positional ? italic(name) : bold(name));
    }
    if (!argument.value.empty()) result << ' ' << italic(argument.value);
    if (argument.repeats) result << "...";
    return result.str();
}

std::string commandLine(const std::string& command, const CommandHelp& help)
{
    std::ostringstream result;
    result << bold(command) << " [" << italic("OPTION") << "]...";
    for (const ArgumentHelp& argument : help.arguments)
        if (argument.required && !argument.positional)
            result << ' ' << bold(argument.names.front()) << ' ' << italic(argument.value);
    for (const ArgumentHelp& argument : help.arguments)
        if (argument.positional) result << ' ' << synopsis(argument);
    result << '\n';
    return result.str();
}

std::string optionList(const CommandHelp& help)
{
    std::ostringstream result;
    for (const ArgumentHelp& argument : help.arguments)
        result << ".TP\n" << synopsis(argument) << '\n' << filled(argument.text);
    return result.str();
}

// See CommandHelp::footer.
std::string footerText(const std::string& footer)
{
    constexpr std::size_t kTermIndent = 2;
    enum class Block { none, paragraph, list, example } block = Block::none;
    std::ostringstream result;
    const auto begin = [&](Block next) {
        if (block == Block::example) result << ".fi\n.RE\n";
        if (next == Block::example) result << ".RS\n.nf\n";
        if (next == Block::paragraph) result << ".PP\n";
        block = next;
    };

    std::istringstream lines(footer);
    for (std::string text; std::getline(lines, text);) {
        const std::size_t indent = indentOf(text);
        if (indent == text.size()) continue;
        if (indent == 0 && text.ends_with(':')) {
            begin(Block::paragraph);
            result << bold(text) << '\n';
            begin(text.starts_with("Example") ? Block::example : Block::none);
        } else if (indent == 0) {
            if (block != Block::paragraph) begin(Block::paragraph);
            result << line(text);
        } else if (block == Block::example) {
            result << line(text.substr(std::min(indent, kTermIndent)));
        } else if (indent == kTermIndent) {
            begin(Block::list);
            const std::size_t end = std::min(text.find(' ', indent), text.size());
            result << ".TP\n" << bold(text.substr(indent, end - indent)) << '\n';
            result << line(text.substr(std::min(text.find_first_not_of(' ', end), text.size())));
        } else {
            result << line(text.substr(indent));
        }
    }
    begin(Block::none);
    return result.str();
}

} // namespace

std::string manPage(const CommandHelp& tool, const std::string& version,
                    const std::string& exitStatus)
{
    const std::vector<CommandHelp> commands = runnable(tool);
    std::string summary = tool.description;
    summary.front() = char(std::tolower(static_cast<unsigned char>(summary.front())));
    if (summary.ends_with('.')) summary.pop_back();

    std::ostringstream page;
    page << ".TH " << upper(tool.name) << " 1 \"\" \"" << escaped(version) << "\"\n"
         << ".SH NAME\n"
         << escaped(tool.name) << " \\- " << escaped(summary) << "\n"
         << ".SH SYNOPSIS\n";
    for (const CommandHelp& command : commands)
        page << commandLine(tool.name + " " + command.name, command) << ".br\n";
    page << bold(tool.name) << ' ' << italic("OPTION") << "\n.SH OPTIONS\n" << optionList(tool);
    for (const CommandHelp& command : commands)
        page << ".SH " << upper(command.name) << "\n"
             << line(command.description + ".") << optionList(command)
             << footerText(command.footer);
    page << ".SH EXIT STATUS\n" << footerText(exitStatus);
    return page.str();
}

} // namespace lumofe
