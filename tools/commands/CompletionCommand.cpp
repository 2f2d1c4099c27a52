/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl completion: what a shell needs to complete command lines of vanto-cl
 */
#include <string>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "output/Output.h"

namespace tools {

namespace {

// 'vanto-cl complete line WORD...' gets the words up to the cursor. It answers with a line for each word that fits, a
// tabulator and what it is behind some, and with lines that begin with a colon: ":files" and ":folders" where such
// stand, ":nospace" where the word goes on. So the shells know nothing of the commands.

constexpr const char* kBash = R"sh(# Completion of vanto-cl for bash.
_vanto_cl() {
    local line words=() found=() cur prefix kind one
    # The shell splits words at '=' and ':'; here they belong to the words.
    line="${COMP_LINE:0:COMP_POINT}"
    read -ra words <<<"$line"
    [[ $line == *[[:space:]] ]] && words+=("")
    cur="${words[${#words[@]}-1]}"
    prefix="${cur%"${cur##*[=:]}"}"
    COMPREPLY=()
    mapfile -t found < <("${words[0]}" complete line "${words[@]:1}" 2>/dev/null)
    for one in "${found[@]}"; do
        case "$one" in
            :nospace) compopt -o nospace 2>/dev/null ;;
            :files | :folders)
                compopt -o filenames 2>/dev/null
                kind="-f"
                [[ $one == :folders ]] && kind="-d"
                mapfile -t COMPREPLY < <(compgen "$kind" -- "$cur") ;;
            *)
                one="${one%%$'\t'*}"
                COMPREPLY+=("${one#"$prefix"}") ;;
        esac
    done
}
complete -F _vanto_cl vanto-cl
)sh";

constexpr const char* kZsh = R"sh(#compdef vanto-cl
# Completion of vanto-cl for zsh.
_vanto-cl() {
    local one
    local -a found fitting nospace
    found=(${(f)"$($words[1] complete line "${(@)words[2,CURRENT]}" 2>/dev/null)"})
    for one in $found; do
        case $one in
            :nospace) nospace=(-S "") ;;
            :files) _files ;;
            :folders) _files -/ ;;
            *) fitting+=(${one%%$'\t'*}) ;;
        esac
    done
    compadd "${nospace[@]}" -a fitting
}
_vanto-cl "$@"
)sh";

constexpr const char* kFish = R"sh(# Completion of vanto-cl for fish.
function __vanto_cl
    set -l words (commandline -opc) (commandline -ct)
    set -l program $words[1]
    set -e words[1]
    for line in ($program complete line $words 2>/dev/null)
        switch $line
            case ':nospace'
            case ':files'
                __fish_complete_path (commandline -ct)
            case ':folders'
                __fish_complete_directories (commandline -ct)
            case '*'
                printf '%s\n' $line
        end
    end
end
complete -c vanto-cl -f -a '(__vanto_cl)'
)sh";

class CompletionCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Argument("SHELL", m_shell, "bash, zsh or fish");
        options.Offer("SHELL", {"bash", "zsh", "fish"});
        options.Notes(
            "Cameras and their features are offered as far as earlier commands have seen them: completing asks no "
            "port. "
            "An installation below /usr has it in place for all three.");
        options.Example("source <(vanto-cl completion bash)", "For the shell that runs; in ~/.bashrc for all");
        options.Example("vanto-cl completion zsh > ~/.zfunc/_vanto-cl", "Where ~/.zfunc is in fpath");
        options.Example("vanto-cl completion fish > ~/.config/fish/completions/vanto-cl.fish", "For fish");
    }

    ExitCode Run(Output& output) override {
        if (m_shell == "bash")
            output.Print(kBash);
        else if (m_shell == "zsh")
            output.Print(kZsh);
        else if (m_shell == "fish")
            output.Print(kFish);
        else
            throw ToolError("there is no completion for '" + m_shell + "'", "There is one for bash, zsh and fish.",
                            ExitCode::kUsage);
        return ExitCode::kDone;
    }

private:
    std::string m_shell;
};

}  // namespace

constexpr CommandEntry kCompletionCommand{"completion", "Print the completion for a shell", &Make<CompletionCommand>};

}  // namespace tools
