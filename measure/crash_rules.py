# SPDX-License-Identifier: MIT
"""What must hold in whatever a crash leaves of a project and of its folder of the repository."""
import functools
import re

TABLE = re.compile(r"(.*/)?(exports|history|almwatch|devices|.+-names|.+-devices)\.csv")
STAMPED = re.compile(r"(.*)-(\d{10})(\.[^/.]+)")
REPOSITORY = "fec/"  # of whose tables nothing but the present one is kept
LASTING = 144000  # seconds that a backup stays


@functools.cache
def belongs_to(path):
    """The file itself, or the file of which it is a backup."""
    backup = STAMPED.fullmatch(path)
    return backup[1] + backup[3] if backup else path


@functools.cache
def is_table(path):
    return TABLE.fullmatch(path) is not None and belongs_to(path) == path


def is_expired(path, now):
    backup = STAMPED.fullmatch(path)
    return backup is not None and int(backup[2]) < now - LASTING


class Rules:
    """The rules of one run that begins at the time `now`. `versions` are all files by their paths
    at the times when every table was whole: before, behind each act, and in the end."""

    def __init__(self, versions, now):
        self.versions, self.now = versions, now
        self.tables = sorted({path for files in versions for path in files if is_table(path)})
        self.needed = []  # (table, bytes, what): to be whole in the table or in a backup
        self.waiting = []  # the same, once the wizard replaces the table
        for path, content in versions[0].items():
            self.need(path, content, "as it was before the run")

    def need(self, path, content, what):
        if is_table(path) and not path.startswith(REPOSITORY):
            self.needed.append((path, content, what))

    def saved(self, path, content):
        """A colleague has replaced a table: what he replaced is up to him until the wizard, which
        has a backup of it, replaces the table in turn."""
        self.waiting += [need for need in self.needed if need[0] == path]
        self.needed = [need for need in self.needed if need[0] != path]
        self.need(path, content, "as the colleague saved it")

    def changed(self, path):
        """The wizard has changed a file or a name."""
        self.needed += [need for need in self.waiting if need[0] == path]
        self.waiting = [need for need in self.waiting if need[0] != path]

    def faults(self, state):
        """What is wrong in a state, as (path, what)."""
        return self.torn(state) + self.nowhere(state) + self.foreign(state)

    def unfinished(self, state):
        """What is wrong in a state when Done has returned."""
        return [(path, "is not the new one when Done is through") for path in self.tables
                if state.get(path) != self.versions[-1].get(path)]

    def torn(self, state):
        return [(path, "is neither the old nor the new one") for path in self.tables
                if all(state.get(path) != version.get(path) for version in self.versions)]

    def nowhere(self, state):
        kept = {(belongs_to(path), content) for path, content in state.items()}
        return [(path, what + " is nowhere") for path, content, what in self.needed
                if (path, content) not in kept]

    def foreign(self, state):
        return [(path, "is not as it was") for path, content in self.versions[0].items()
                if not is_table(path) and state.get(path) != content
                and not (is_expired(path, self.now) and path not in state)]
