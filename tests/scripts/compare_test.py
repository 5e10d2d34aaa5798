#!/usr/bin/env python3
"""What scripts/bench compare makes of its measurements: names, lists, traces, means over classes, ratios by rounds."""
import io
import os
import sys
import tempfile
import unittest
from contextlib import redirect_stdout
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "bench/compare"))

import file_list  # noqa: E402
import made_files  # noqa: E402
import measure  # noqa: E402
import tables  # noqa: E402


def times(floor, library):
    """The record of one contestant each, the same by both clocks."""
    return {"floor": {"cpu": floor, "wall": floor}, "library": {"cpu": library, "wall": library}}


class FileLists(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.source = os.path.join(self.folder.name, "source")
        os.makedirs(os.path.join(self.source, "below"))
        for name in ("a.doc", "below/b\nb.txt"):
            Path(self.source, name).write_bytes(name.encode())
        os.symlink("a.doc", os.path.join(self.source, "link"))

    def lay_out(self, wanted):
        return file_list.FileList([self.source], wanted, os.path.join(self.folder.name, f"laid{wanted}"))

    def test_files_are_repeated_until_there_are_enough(self):
        for wanted, repeats in ((1, 1), (2, 1), (3, 2), (6, 3)):
            names = [len(names) for names in self.lay_out(wanted).copies]
            self.assertEqual(names, [repeats, repeats])

    def test_names_are_fresh_and_keep_the_extension(self):
        names = [name for names in self.lay_out(4).copies for name in names]
        self.assertEqual(len(set(names)), 4)
        self.assertEqual([os.path.basename(name) for name in names],
                         ["00000_a.doc", "00000_a.doc", "00001_b_b.txt", "00001_b_b.txt"])
        self.assertEqual(Path(names[3]).read_bytes(), b"below/b\nb.txt")

    def test_a_class_goes_round_until_the_lap_is_long_enough(self):
        files = self.lay_out(4)
        files.by_class = {"text": files.copies[:1]}
        laps = files.laps(5)
        self.assertEqual({name: count for name, (_, count) in laps.items()}, {"start": 0, "text": 6, "shuffled": 4})
        self.assertEqual(len(Path(laps["text"][0]).read_text().splitlines()), 6)

    def test_a_sample_is_evenly_chosen(self):
        files = self.lay_out(1)
        files.by_class = {"text": [[f"/{index}"] for index in range(80)], "markup": [["/only"]]}
        path, count = files.sample("text")
        self.assertEqual((count, Path(path).read_text().split()), (40, [f"/{index}" for index in range(0, 80, 2)]))
        self.assertEqual(files.sample("markup")[1], 1)


    def test_trees_have_as_many_files_of_each_class(self):
        files = self.lay_out(2)
        files.by_class = {"early row": files.copies[:1], "text": files.copies[1:]}
        trees = files.trees(1203)
        self.assertEqual({name: count for name, (_, count) in trees.items()},
                         {"early row": 602, "text": 602, "all of them": 1204})
        for name, (path, count) in trees.items():
            found = [len(names) for _, _, names in os.walk(path) if names]
            self.assertEqual(sum(found), count, name)
            self.assertEqual(max(found), 500, name)
        self.assertEqual(sorted(os.listdir(os.path.join(trees["text"][0], "0001")))[-1], "000601_00001_b_b.txt")


class Counts(unittest.TestCase):
    def test_a_line_of_a_trace(self):
        for line, expected in (('12 pread64(3</a (b) = 7>, ""..., 4096, 0) = 512', ("pread64", "512")),
                               ('openat(AT_FDCWD, "/a", O_RDONLY) = -1 ENOENT (No such file)', ("openat", "-1"))):
            found = measure.CALL.match(line)
            self.assertEqual((found[1], found[3]), expected)
        self.assertIsNone(measure.CALL.match("+++ exited with 0 +++"))

    def test_bytes_are_those_that_were_read(self):
        calls = [("openat", 3), ("pread64", 100), ("pread64", -1), ("read", 5), ("write", 50), ("close", 0)]
        self.assertEqual(measure.sums(calls), {"calls": 6, "preads": 2, "bytes": 105})


class Figures(unittest.TestCase):
    def test_median(self):
        self.assertEqual(measure.median([3, 1, 2]), 2)
        self.assertEqual(measure.median([4, 1, 2, 3]), 2.5)

    def test_the_mix_is_weighted_by_files_round_by_round(self):
        self.assertEqual(tables.weighted({"a": [1, 2], "b": [5, 10]}, ["a", "b"], {"a": 3, "b": 1}), [2, 4])

    def test_ratios_are_taken_round_by_round(self):
        self.assertEqual(tables.ratios({"floor": [1, 2], "library": [3, 8]}, "library"), [3, 4])

    def test_numbers_have_three_digits(self):
        self.assertEqual([tables.number(value) for value in (1234.5, 100, 99.94, 10, 9.994, 0)],
                         ["1,234", "100", "99.9", "10.0", "9.99", "0.00"])

    def test_a_table_without_partners(self):
        result = {"files": {"text": 2}, "times": {"text": times([1, 2, 3], [2, 4, 6]), "shuffled": times([1] * 3, [5] * 3)}}
        output = io.StringIO()
        with redirect_stdout(output):
            tables.print_times(result, "cpu", "CPU time")
        self.assertIn("| text | 2 | 2.00 (1.00 to 3.00) | 4.00 (2.00 to 6.00) |", output.getvalue())
        self.assertIn("| the mix, in laps | 2.00 | 2.00 |", output.getvalue())
        self.assertIn("| the mix, shuffled | 5.00 | 5.00 |", output.getvalue())


    def test_starting_is_subtracted_from_runs_of_the_program(self):
        self.assertEqual(measure.by_file([3, 1, 2], [12, 22], 10), [1, 2])

    def test_the_program_with_two_threads_beside_one(self):
        row = {"1": {"cpu": [10, 10, 10], "wall": [10, 12, 11]}, "2": {"cpu": [10, 11, 10.5], "wall": [5, 6, 5]}}
        result = {"trees": {"text": 6250}, "program": {"text": row}}
        output = io.StringIO()
        with redirect_stdout(output):
            tables.print_program(result)
        self.assertIn("| text | 6,250 | 90,909 | 200,000 | 2.00 (2.00 to 2.20) | 2.00 | 10.0 | 10.5 | 1.05 (1.00 to 1.10) | 1.00 |",
                      output.getvalue())


class Runs(unittest.TestCase):
    def test_a_run_is_timed_and_must_not_fail(self):
        told = measure.timed([sys.executable, "-c", "print(sum(range(100000)))"])
        self.assertEqual(sorted(told), ["cpu", "wall"])
        self.assertTrue(all(time > 0 for time in told.values()))
        with self.assertRaises(measure.subprocess.CalledProcessError):
            measure.timed([sys.executable, "-c", "raise SystemExit(3)"])

    def test_every_tree_takes_its_turn_with_every_number_of_threads(self):
        runs = []

        def timed(command):
            runs.append(command)
            return {"cpu": 100 * len(command[-1]), "wall": 50}

        class Tools:
            walk_command = staticmethod(lambda jobs, tree: [jobs, tree])

        original, measure.timed = measure.timed, timed
        self.addCleanup(setattr, measure, "timed", original)
        rounds = measure.program_rounds(Tools, 2, {"a": ("aaa", 10), "b": ("bb", 1)}, "e")
        self.assertEqual(rounds, {"a": dict.fromkeys("12", {"cpu": [20, 20], "wall": [0, 0]}),
                                  "b": dict.fromkeys("12", {"cpu": [100, 100], "wall": [0, 0]})})
        for first in range(0, 18, 6):
            self.assertEqual(sorted(runs[first:first + 6]),
                             [[jobs, tree] for jobs in "12" for tree in ("aaa", "bb", "e")])


class MadeFiles(unittest.TestCase):
    def test_all_sizes_have_the_same_head(self):
        with tempfile.TemporaryDirectory() as folder:
            heads = {}
            for head, size, path in made_files.sparse_files(os.path.join(folder, "sparse")):
                self.assertEqual(os.path.getsize(path), made_files.SIZES[size])
                with open(path, "rb") as stream:
                    heads.setdefault(head, set()).add(stream.read(made_files.HEAD_SIZE))
            self.assertEqual([len(contents) for contents in heads.values()], [1] * len(made_files.heads()))

    def test_printable_characters_have_no_line_end(self):
        self.assertTrue(all(0x20 <= byte < 0x7F for byte in made_files.printable(1000)))


unittest.main()
