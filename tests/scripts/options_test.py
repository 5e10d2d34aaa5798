#!/usr/bin/env python3
"""options_test.py PROGRAM: every option, form of output, field and word that an option takes stands in the program's manual
page, and all but the fields in each completion, and the other way round; the library's manual page tells all that its header
declares; and the examples of README.md are true."""
import functools
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

TOP = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PROGRAM = sys.argv.pop(1) if len(sys.argv) > 1 else os.path.join(TOP, "build", "dev", "fiid")


def read(*path):
    with open(os.path.join(TOP, *path), encoding="utf-8") as file:
        return file.read()


def tell(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, stdin=subprocess.DEVNULL).stdout


def section(page, title):
    """A section of a manual page or, with number signs, of a document."""
    return re.split(r"^(?:==|##) ", re.split(r"^(?:==|##) %s\n" % title, page, flags=re.M)[1], flags=re.M)[0]


def terms(text):
    """The terms of a list of asciidoctor: *A*, *B*:: ..."""
    return [term for line in re.findall(r"^(\*.*?)::(?: |$)", text, re.M) for term in re.findall(r"\*(.+?)\*", line)]


def needs(shell):
    return unittest.skipUnless(shutil.which(shell), shell + " is not installed")


HELP = tell(PROGRAM, "--help")
OPTIONS = {option for names in re.findall(r"^  (-\S+)", HELP, re.M) for option in names.split(",")}
WITH_VALUE = set(re.findall(r"^  (?:-\w,)?(--[\w-]+) [A-Z]+\b", HELP, re.M))
FORMS = set(re.search(r"FORMAT:\{(.*?)\}", HELP).group(1).split(","))


def mistake(*options):
    """What the program has to say about a word that it does not know."""
    run = subprocess.run([PROGRAM, *options, os.devnull], capture_output=True, text=True, stdin=subprocess.DEVNULL)
    return run.stderr.splitlines()[0]


# What options take, of the program's help or, where it lists them, of its complaint.
FAMILIES = mistake("--match", "nonsense").split(" families are ")[1].split(", ")
FIELDS = mistake("--fields", "nonsense", "--format", "csv").split("; there are ")[1].split(", ")
WORDS = {
    "--by": set(re.search(r"--by KEY:\{(.*?)\}", HELP).group(1).split(",")),
    "--query": set(re.search(r"--query QUERY:\{(.*?)\}", HELP).group(1).split(",")),
    "--hash": set(re.search(r"--hash KIND .*: (\w+) or (\w+)\n", HELP).groups()),
    "--match": set(FAMILIES),
    "--exclude-format": set(FAMILIES),
}


class Program(unittest.TestCase):
    page = read("man", "fiid.1.adoc")

    def test_help_is_read(self):
        self.assertLessEqual({"-h", "--help", "--format", "--files-from", "-0", "--null"}, OPTIONS)
        self.assertLessEqual({"--format", "--files-from", "--jobs"}, WITH_VALUE)
        self.assertLessEqual({"text", "json"}, FORMS)
        self.assertLessEqual({"fiid", "copies"}, set(FIELDS))

    def test_words_of_options(self):
        for option, words in WORDS.items():
            text = re.search(r"^\*%s\* .*::\n((?:.+\n)+)" % option, self.page, re.M).group(1)
            if option != "--exclude-format":  # it takes what is told at --match
                self.assertEqual(set(re.findall(r"(?<!-)\*([a-z]\w*)\*", text)), words, option)

    def test_families(self):
        told = re.search(r"families \(([^)]*)\)", HELP).group(1)
        self.assertEqual(re.split(r",\s+", told), FAMILIES)
        formats = tell(PROGRAM, "--formats", "--format", "tsv").splitlines()
        column = formats[0].split("\t").index("family")
        self.assertEqual({line.split("\t")[column] for line in formats[1:]}, set(FAMILIES))
        row = re.search(r"^\| `family` \| when named \| (.*) \|$", read("docs", "output-formats.md"), re.M).group(1)
        self.assertEqual(re.findall(r"`(\w+)`", row), FAMILIES)

    def test_options(self):
        self.assertEqual(set(terms(section(self.page, "Options"))), OPTIONS)

    def test_forms_of_output(self):
        self.assertEqual(set(terms(section(self.page, "Output").split("The fields of a record")[0])), FORMS)

    def test_fields(self):
        told = terms(section(self.page, "Output").split("The fields of a record")[1].split("Others stand behind")[0])
        header = tell(PROGRAM, "--explain", "--format", "tsv", os.path.join(TOP, "README.md")).splitlines()[0].split("\t")
        self.assertEqual([field for field in told if field != "path_hex"], header)

    def test_all_fields(self):
        self.assertEqual(terms(section(self.page, "Output").split("The fields of a record")[1]), FIELDS)
        table = section(read("docs", "output-formats.md"), "Fields")
        self.assertEqual(set(re.findall(r"^\| `(\w+)` \|", table, re.M)), set(FIELDS))

    def test_words_of_fields(self):
        header = read("include", "fiid", "detect.h")
        for field, kind in (("basis", "BASIS"), ("warning", "WARN")):
            words = {word.lower() for word in re.findall(r"^    FIID_%s_(\w+) = " % kind, header, re.M)}
            self.assertGreater(len(words), 2)
            text = self.page.split("\n*%s*:: " % field)[1].split("\n*")[0]
            self.assertEqual(set(re.findall(r"\*(\w+)\*", text)), words)

    def test_exit_statuses(self):
        self.assertEqual(terms(section(self.page, "Exit status")), ["0", "1", "2"])
        self.assertEqual(subprocess.run([PROGRAM, "--no-such-option"], capture_output=True).returncode, 2)


class Readme(unittest.TestCase):
    """The examples of README.md print what they show. Times are those of a check-out."""

    def test_from_the_package_to_a_report(self):
        """A directory that holds nothing but the way to the samples, and the commands one behind the other."""
        text = section(read("README.md"), "From the package to a report in five minutes")
        examples = re.findall(r"^    \$ (fiid .*)\n((?:    [^$].*\n|\n(?=    [^$]))*)", text, re.M)
        self.assertGreaterEqual(len(examples), 6)
        with tempfile.TemporaryDirectory() as directory:
            os.symlink(os.path.join(TOP, "samples"), os.path.join(directory, "samples"))
            for command, shown in examples:
                told = subprocess.run(["sh", "-c", 'fiid() { "$0" "$@"; }; ' + command, os.path.abspath(PROGRAM)], cwd=directory,
                                      check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout
                self.assertEqual(told, re.sub("^    ", "", shown, flags=re.M), command)
            with open(os.path.join(directory, "report.html"), encoding="utf-8") as report:
                self.assertIn("samples/pdf/writer.pdf", report.read())

    def test_names_of_files(self):
        """What README.md and docs/ARCHITECTURE.md call a file or folder of the project is one."""
        folders = "|".join(sorted(name for name in os.listdir(TOP) if os.path.isdir(os.path.join(TOP, name)) and name != "build"))
        for document in ("README.md", "docs/ARCHITECTURE.md"):
            named = re.findall(r"[`(](?:\./)?((?:%s)/[\w./-]*)" % folders, read(document))
            self.assertGreater(len(named), 5)
            for name in named:
                self.assertTrue(os.path.exists(os.path.join(TOP, name)), document + " names " + name)

    def test_examples(self):
        without_times = functools.partial(re.sub, r'"mtime":"[^"]*"', '"mtime":""')
        examples = re.findall(r"^    \$ (scripts/identify (?:.*\\\n)*.*)\n((?:    [^$].*\n)+)", read("README.md"), re.M)
        self.assertGreaterEqual(len(examples), 2)
        for command, shown in examples:
            command = command.replace("scripts/identify", '"$0"', 1)
            told = subprocess.run(["sh", "-c", command, os.path.abspath(PROGRAM)], cwd=TOP, check=True, capture_output=True, text=True).stdout
            self.assertEqual(without_times(told), without_times(re.sub("^    ", "", shown, flags=re.M)))


class Library(unittest.TestCase):
    page = read("man", "fiid_detect.3.adoc")
    header = re.sub(r"/\*.*?\*/", "", read("include", "fiid", "detect.h"), flags=re.S)

    def test_functions(self):
        declared = re.findall(r"\b(fiid_\w+)\([^()]*\);", self.header)
        self.assertGreater(len(declared), 5)
        prototypes = section(self.page, "Synopsis").split("....")[1]
        self.assertEqual(re.findall(r"\b(fiid_\w+)\(", prototypes), sorted(declared, key=prototypes.find))
        for name in declared:
            self.assertIn("*%s*" % name if not name.startswith("fiid_detect_") else name, self.page)

    def test_constants(self):
        declared = set(re.findall(r"\bFIID_[A-Z_]+\b", self.header)) - {"FIID_DETECT_H"}
        self.assertEqual(declared, set(re.findall(r"\bFIID_[A-Z_]+\b", self.page)))

    def test_fields(self):
        for structure in re.findall(r"typedef struct fiid_\w+ \{(.*?)\} fiid_\w+;", self.header, re.S):
            for field in re.findall(r"(?:\(\*(\w+)\)\([^;]*|(\w+)(?:\[\d+\])?);", structure):
                self.assertIn("*%s*" % (field[0] or field[1]), self.page)


class Completions(unittest.TestCase):
    def complete_in_bash(self, *words):
        return set(tell("bash", "-c", 'source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _fiid; printf "%s\\n" "${COMPREPLY[@]}"',
                        os.path.join(TOP, "completions", "fiid.bash"), "fiid", *words).split())

    def test_bash(self):
        self.assertEqual(self.complete_in_bash("-"), OPTIONS)
        self.assertEqual(self.complete_in_bash("--no"), {option for option in OPTIONS if option.startswith("--no")})
        self.assertEqual(self.complete_in_bash("--format", ""), FORMS)
        self.assertEqual(self.complete_in_bash("--format", "=", "nd"), {"ndjson"})
        self.assertEqual(self.complete_in_bash("--format", "="), FORMS)
        for option, words in WORDS.items():
            self.assertEqual(self.complete_in_bash(option, ""), words)
            self.assertEqual(self.complete_in_bash(option, "="), words)
        self.assertIn(os.path.join(TOP, "README.md"), self.complete_in_bash(os.path.join(TOP, "READ")))
        self.assertIn(os.path.join(TOP, "README.md"), self.complete_in_bash("--files-from", os.path.join(TOP, "READ")))

    def test_zsh(self):
        text = read("completions", "_fiid")
        arguments = text.split("_arguments", 1)[1]
        self.assertTrue(text.startswith("#compdef fiid\n"))
        self.assertEqual(set(re.findall(r"(?<![\w-])(-[\w-]+)(?==?[\[,}])", arguments)), OPTIONS)
        # The equals sign lets a value follow it, too: --format=json.
        self.assertEqual(set(re.findall(r"(--[\w-]+)=[\[}]", arguments)), WITH_VALUE)
        self.assertEqual(set(re.search(r":form:\((.*?)\)", arguments).group(1).split()), FORMS)
        families = re.search(r"families=\((.*?)\)", text).group(1)
        for option, words in WORDS.items():
            offered = re.search(r"%s=\[.*?\]:\w+:\((.*?)\)" % option, arguments).group(1).replace("$families", families)
            self.assertEqual(set(offered.split()), words, option)

    def test_fish(self):
        lines = re.findall(r"^complete -c fiid (.*)$", read("completions", "fiid.fish"), re.M)
        named = {"-" + name for line in lines for name in re.findall(r"-s (\S)", line)}
        named |= {"--" + name for line in lines for name in re.findall(r"-l (\S+)", line)}
        self.assertEqual(named, OPTIONS)
        self.assertEqual(set(re.search(r"-l format -x -a '(.*?)'", "\n".join(lines)).group(1).split()), FORMS)
        families = re.search(r"set -l families '(.*?)'", read("completions", "fiid.fish")).group(1)
        for option, words in WORDS.items():
            offered = re.search(r"-l %s -x -a ['\"](.*?)['\"]" % option[2:], "\n".join(lines)).group(1)
            self.assertEqual(set(offered.replace("$families", families).split()), words, option)

    @needs("zsh")
    def test_zsh_reads_it(self):
        tell("zsh", "-n", os.path.join(TOP, "completions", "_fiid"))

    @needs("fish")
    def test_fish_completes(self):
        script = "source %s; complete -C 'fiid -'" % os.path.join(TOP, "completions", "fiid.fish")
        offered = {line.split("\t")[0] for line in tell("fish", "--no-config", "-c", script).splitlines()}
        self.assertEqual(offered, OPTIONS)


if __name__ == "__main__":
    unittest.main()
