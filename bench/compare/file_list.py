"""The files that are measured: real ones under fresh names, sorted into classes, and lists of their paths."""
import os
import random
import re
import shutil
import subprocess
import sys

CLASSES = ["early row", "later row", "markup", "storage", "unclaimed storage", "package", "text", "unknown"]
SHUFFLED = "shuffled"
START = "start"
WHOLE_TREE = "all of them"
SAMPLE_SIZE = 40
FILES_OF_A_DIRECTORY = 500


def real_files(directories):
    """All readable regular files below the directories, each with the name it is told by."""
    files = []
    for directory in directories:
        for folder, folders, names in os.walk(directory):
            folders.sort()
            for name in sorted(names):
                path = os.path.join(folder, name)
                if os.path.isfile(path) and not os.path.islink(path) and os.access(path, os.R_OK):
                    files.append((path, os.path.relpath(path, directory)))
    return files


def fresh_name(index, path):
    """A name with the extension of the path, which may count for the answer, and nothing that breaks a list of lines."""
    return f"{index:05}_" + re.sub(rb"[\x00-\x1F]", b"_", os.fsencode(os.path.basename(path))[-200:]).decode(
        errors="replace").replace("\ufffd", "_")


class FileList:
    """Real files, copied into a folder and linked there under further names until there are enough."""

    def __init__(self, directories, wanted, folder):
        self.folder = folder
        self.real_names = {}
        self.copies = []  # for each file all its names; the first is the copy
        files = real_files(directories)
        if not files:
            sys.exit("scripts/bench compare: no files to measure")
        repeats = max(1, -(-wanted // len(files)))
        for repeat in range(repeats):
            os.makedirs(os.path.join(folder, "files", f"{repeat:04}"))
        for index, (path, told) in enumerate(files):
            names = [os.path.join(folder, "files", f"{repeat:04}", fresh_name(index, path)) for repeat in range(repeats)]
            shutil.copyfile(path, names[0])
            for name in names[1:]:
                os.link(names[0], name)
            self.real_names[names[0]] = told
            self.copies.append(names)
        os.makedirs(os.path.join(folder, "lists"))

    def sort_into_classes(self, tool):
        """Asks the measuring program for the class of each file."""
        listed = self.write("all", [names[0] for names in self.copies])
        output = subprocess.run([tool, "classes", listed], check=True, capture_output=True, text=True).stdout
        class_of = {}
        for line in output.splitlines():
            name, _, _, path = line.split("\t")
            class_of[path] = name
        self.by_class = {name: [names for names in self.copies if class_of.get(names[0]) == name] for name in CLASSES}
        self.by_class = {name: members for name, members in self.by_class.items() if members}

    def write(self, name, paths):
        """Writes a list of paths and returns its path."""
        path = os.path.join(self.folder, "lists", name.replace(" ", "_"))
        with open(path, "w", encoding="utf-8") as stream:
            stream.writelines(f"{entry}\n" for entry in paths)
        return path

    def laps(self, lap_files):
        """A list for each class, long enough to be timed, one of all files shuffled, and an empty one."""
        laps = {START: []}
        for name, members in self.by_class.items():
            paths = [path for names in members for path in names]
            random.Random(1).shuffle(paths)
            laps[name] = paths * max(1, -(-lap_files // len(paths)))
        laps[SHUFFLED] = [path for names in self.copies for path in names]
        random.Random(2).shuffle(laps[SHUFFLED])
        return {name: (self.write("lap " + name, paths), len(paths)) for name, paths in laps.items()}

    def different(self, name):
        """A list of the different files of a class, and their number."""
        paths = [names[0] for names in self.by_class[name]]
        return self.write("different " + name, paths), len(paths)

    def sample(self, name):
        """A list of at most 40 files of a class, evenly chosen, and their number."""
        paths = [names[0] for names in self.by_class[name]]
        count = min(SAMPLE_SIZE, len(paths))
        return self.write("sample " + name, [paths[index * len(paths) // count] for index in range(count)]), count

    def trees(self, wanted):
        """A tree for each class, as many files in each and together as many as wanted, links to the copies in directories of
        500: {name: (path, files)}. The last is the tree of all."""
        top = os.path.join(self.folder, "tree")
        each = -(-wanted // len(self.by_class))
        trees = {}
        for name, members in self.by_class.items():
            root = os.path.join(top, name.replace(" ", "_"))
            for number in range(each):
                folder = os.path.join(root, f"{number // FILES_OF_A_DIRECTORY:04}")
                if number % FILES_OF_A_DIRECTORY == 0:
                    os.makedirs(folder)
                copy = members[number % len(members)][0]
                os.link(copy, os.path.join(folder, f"{number:06}_{os.path.basename(copy)}"))
            trees[name] = (root, each)
        trees[WHOLE_TREE] = (top, each * len(trees))
        return trees
