// Command lines that are wrong, and help.
#include "run_tool.h"

namespace tova_fw_builder {
namespace {

TEST(Usage, WrongWordsAreNamedWithTheNearest) {
  const struct {
    std::vector<std::string> words;
    const char* told;
    const char* hint;  // whose --help
  } cases[] = {
      {{}, "A subcommand is required", "tova_fw"},
      {{"shw", "x"},
       "'shw' is no command of tova_fw; did you mean 'show'?",
       "tova_fw"},
      {{"completion"}, "SHELL is required", "tova_fw completion"},
      {{"nothing"}, "'nothing' is no command of tova_fw", "tova_fw"},
      {{"key", "shwo", "x"},
       "'shwo' is no command of tova_fw key; did you mean 'show'?",
       "tova_fw key"},
      {{"key"}, "A subcommand is required", "tova_fw key"},
      {{"show", "--jsn", "x"},
       "'--jsn' is no option of tova_fw show; did you mean '--json'?",
       "tova_fw show"},
      {{"lint", "--definition", "x"},
       "'--definition' is no option of tova_fw lint: DEFINITION stands without "
       "it",
       "tova_fw lint"},
      // The value was forgotten: no file is called like an option.
      {{"map", "--json", "--html", "x"},
       "--json: a value has to stand behind it, and '--html' is an option",
       "tova_fw map"},
      {{"check", "x", "--trust", "--release"},
       "--trust: a value has to stand behind it, and '--release' is an option",
       "tova_fw check"},
      {{"lint", "--sarif", "--strict", "x"},
       "--sarif: a value has to stand behind it, and '--strict' is an option",
       "tova_fw lint"},
      {{"show", "--bites=3", "x"},
       "'--bites' is no option of tova_fw show; did you mean '--bytes'?",
       "tova_fw show"},
      {{"check", "-x", "f"},
       "'-x' is no option of tova_fw check",
       "tova_fw check"},
      {{"check", "--release=false", "x"},
       "release was given a disallowed flag override",
       "tova_fw check"},
      {{"--vesion"},
       "'--vesion' is no option of tova_fw; did you mean '--version'?",
       "tova_fw"},
      // Of the two kinds of signatures.
      {{"to-sign", "x", "--relase"},
       "'--relase' is no option of tova_fw to-sign; did you mean "
       "'--release'?",
       "tova_fw to-sign"},
      {{"diff", "a", "b", "c"},
       "The following argument was not expected: c",
       "tova_fw diff"},
      {{"show", "--color=yes", "x"},
       "--color: 'yes' is none of auto, always, never",
       "tova_fw show"},
      {{"show", "--as", "binry", "x"},
       "--as: 'binry' is none of binary, manifest-1.5, metadata, "
       "extended-manifest, package-descriptor, key-pair, public-key, embedded; "
       "did you mean 'binary'?",
       "tova_fw show"},
      {{"to-sign", "--as", "digst", "--debug", "x"},
       "--as: 'digst' is none of message, digest, digest-info; did you mean "
       "'digest'?",
       "tova_fw to-sign"},
      {{"completion", "tcsh"},
       "SHELL: 'tcsh' is none of bash, fish, zsh",
       "tova_fw completion"},
      {{"show", "--script", "s", "--as", "binary", "x"},
       "excludes --script",
       "tova_fw show"},
      {{"check", "--json", "--summary", "x"}, "excludes", "tova_fw check"},
      {{"to-sign", "x"},
       "Exactly 1 option from [--debug,--release] is required",
       "tova_fw to-sign"},
      {{"to-sign", "x", "--release", "--debug"},
       "is required and 2 were given",
       "tova_fw to-sign"},
      // It would be a release signature without a word.
      {{"to-sign", "x", "--debug=false"},
       "debug was given a disallowed flag override",
       "tova_fw to-sign"},
  };
  for (const auto& c : cases) {
    const Outcome run = run_tool(c.words);
    EXPECT_EQ(2, run.status) << c.told;
    EXPECT_EQ("", run.out) << c.told;
    EXPECT_EQ(0u, run.err.find("tova_fw: ")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find(c.told)) << run.err;
    EXPECT_TRUE(
        run.err.ends_with(std::string("\nTry '") + c.hint + " --help'.\n"))
        << run.err;
  }
}

TEST(Usage, HelpHasAnExample) {
  for (const char* command : {"show", "diff", "check", "map", "key show",
                              "to-sign", "attach", "completion"}) {
    std::vector<std::string> words;
    std::istringstream text(command);
    for (std::string word; text >> word;) words.push_back(word);
    words.push_back("--help");
    const Outcome run = run_tool(words);
    EXPECT_EQ(0, run.status);
    EXPECT_NE(std::string::npos, run.out.find("Example")) << run.out;
    EXPECT_NE(std::string::npos,
              run.out.find(std::string("tova_fw ") + command))
        << run.out;
    EXPECT_EQ(std::string::npos, run.out.find("Option Group")) << run.out;
  }
}

// Each shell gets the commands, the options of each and their values.
TEST(Usage, CompletionsKnowTheCommands) {
  for (const char* shell : {"bash", "fish", "zsh"}) {
    const Outcome run = run_tool({"completion", shell});
    EXPECT_EQ(0, run.status);
    for (const char* word : {"show", "attach", "ignore-dates", "deploy-dir",
                             "digest-info", "release", "always"}) {
      EXPECT_NE(std::string::npos, run.out.find(word)) << shell << word;
    }
  }
}

}  // namespace
}  // namespace tova_fw_builder
