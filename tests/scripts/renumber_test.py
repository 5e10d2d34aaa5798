#!/usr/bin/env python3
"""scripts/renumber on a copy of the rows and of what goes with them: rows that come, go, and are numbered twice."""
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
COPIED = ["scripts/renumber", "signatures", "tests/golden", "tests/signatures", "docs", "samples/answers.tsv"]
ROW = re.compile(r"^    \{ *(\d+),", re.MULTILINE)
ROWS = "signatures/media_rows.h"
HEX = "tests/golden/rows.hex"
MENTIONS = "tests/signatures/mentions_test.cpp"
NEW_ROW = '    {  0, R"(>0 "new")", Id(1503), ""},\n'
TO_WRITE = "to be written by hand: the row's bytes with its end mark"


def mentions(one, two, three):
    """A test that names three rows in every way there is."""
    return (f"// Row {one}; rows {one}, {two} and {three}; rows {one} to {three}.\n"
            f"constexpr std::uint16_t row = {one}_row;\n"
            f"EXPECT_EQ(row, {two});\n"
            f"EXPECT_EQ(json[\"row\"], {three});\n"
            f"const char* text = R\"({{\"row\":{two}}})\";\n"
            "EXPECT_EQ(answer, 172);  // in 172 ways\n")


class Renumber(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="fiid-renumber-")
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name)
        for name in COPIED:
            target = self.root / name
            target.parent.mkdir(parents=True, exist_ok=True)
            if (SOURCE / name).is_dir():
                shutil.copytree(SOURCE / name, target)
            else:
                shutil.copy2(SOURCE / name, target)
        # A row in the middle of its header, found by what it says: its number changes with the table.
        self.line = next(line for line in self.read(ROWS).splitlines(True) if '"GIF8"' in line)
        self.row = int(ROW.match(self.line)[1])
        self.write(MENTIONS, mentions(self.row - 1, self.row, self.row + 1))
        self.git("init", "-q")
        self.git("add", "-A")
        self.git("-c", "user.name=t", "-c", "user.email=t@example.org", "commit", "-q", "-m", "as it was")

    def git(self, *words):
        subprocess.run(["git", "-C", str(self.root), *words], check=True, capture_output=True)

    def read(self, name):
        return (self.root / name).read_text(encoding="utf-8")

    def write(self, name, text):
        (self.root / name).write_text(text, encoding="utf-8")

    def replace(self, name, old, new):
        text = self.read(name)
        self.assertEqual(text.count(old), 1, old)
        self.write(name, text.replace(old, new))

    def files(self):
        """All files of the copy but git's own, with their bytes."""
        return {str(path.relative_to(self.root)): path.read_bytes() for path in self.root.rglob("*")
                if path.is_file() and ".git" not in path.parts}

    def hex_lines(self):
        """The bytes of each row and of the closing entry, in order."""
        lines = [line.split("\t") for line in self.read(HEX).splitlines() if not line.startswith("#")]
        self.assertEqual([int(number) for number, _ in lines], list(range(1, len(lines) + 1)))
        return [text for _, text in lines]

    def expect_numbers_in_order(self, count):
        """All rows bear the number of their place, and each header tells its own."""
        expected = 1
        tables = []
        for path in (self.root / "signatures").glob("*_rows.h"):
            text = path.read_text(encoding="utf-8")
            first, last = map(int, re.search(r"rows (\d+) to (\d+)", text).groups())
            tables.append((first, last, [int(number) for number in ROW.findall(text)]))
        for first, last, numbers in sorted(tables):
            self.assertEqual(first, expected)
            self.assertEqual(numbers, list(range(first, last + 1)))
            expected = last + 1
        self.assertEqual(expected - 1, count)
        self.assertIn(f"signatureRowCount = {count};", self.read("signatures/table.h"))

    def run_script(self, status, said):
        """Runs it; it must end with the status and say so, on either output."""
        run = subprocess.run([str(self.root / "scripts/renumber")], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, status, run.stdout + run.stderr)
        self.assertIn(said, run.stdout + run.stderr)

    def insert(self):
        self.replace(ROWS, self.line, NEW_ROW + self.line)
        self.run_script(0, f"Write the bytes of row {self.row} into tests/golden/rows.hex")

    def test_leaves_a_table_in_order_alone(self):
        before = self.files()
        self.run_script(0, "Every row bears the number of its place.")
        self.assertEqual(self.files(), before)

    def test_a_row_that_comes_moves_all_behind_it(self):
        rows = self.hex_lines()
        self.insert()
        self.expect_numbers_in_order(len(rows))  # one more than before: rows has the closing entry too
        at = self.row - 1
        self.assertEqual(self.hex_lines(), rows[:at] + [TO_WRITE] + rows[at:])
        self.assertEqual(self.read(MENTIONS), mentions(self.row - 1, self.row + 1, self.row + 2))
        self.run_script(0, "Every row bears the number of its place.")

    def test_a_row_that_came_and_went_leaves_all_as_it_was(self):
        before = self.files()
        self.insert()
        self.replace(ROWS, NEW_ROW.replace("  0", str(self.row)), "")
        self.run_script(0, "")
        self.assertEqual(self.files(), before)

    def test_a_row_that_goes_is_told_where_it_is_named(self):
        rows = self.hex_lines()
        self.replace(ROWS, self.line, "")
        self.run_script(1, f"left as it is: {MENTIONS}:3: EXPECT_EQ(row, {self.row}: there is no such row any more")
        self.expect_numbers_in_order(len(rows) - 2)
        self.assertEqual(self.hex_lines(), rows[:self.row - 1] + rows[self.row:])
        self.assertIn(f"json[\"row\"], {self.row});", self.read(MENTIONS))

    def test_a_new_row_may_bear_the_number_of_one_that_is_known(self):
        rows = self.hex_lines()
        self.replace(ROWS, self.line, NEW_ROW.replace("  0", str(self.row)) + self.line)
        self.run_script(0, f"Write the bytes of row {self.row} into tests/golden/rows.hex")
        self.expect_numbers_in_order(len(rows))

    def test_two_unknown_rows_of_one_number_are_refused(self):
        changed = NEW_ROW.replace("  0", str(self.row))
        self.replace(ROWS, self.line, changed + changed.replace("new", "newer"))
        before = self.files()
        self.run_script(1, f"2 rows bear the number {self.row}; give 0 to the new one")
        self.assertEqual(self.files(), before)

    def test_rows_that_were_numbered_by_hand_are_refused(self):
        last = max((self.root / "signatures").glob("*_rows.h"), key=lambda path: int(ROW.search(path.read_text())[1]))
        text = last.read_text(encoding="utf-8")
        last.write_text(ROW.sub(lambda row: f"    {{{int(row[1]) + 1},", text), encoding="utf-8")
        self.replace(ROWS, self.line, NEW_ROW + self.line)
        before = self.files()
        self.run_script(1, "was it numbered by hand?")
        self.assertEqual(self.files(), before)


if __name__ == "__main__":
    unittest.main()
