# SPDX-License-Identifier: MIT
"""What a crash may leave, as the marks on the disk have it.

A mark says "began" or "confirmed", the name of a fact and its new value; what was begun may name
values to be seen on the way. A fact that nobody has spoken of is absent.
"""

import bisect

ABSENT = frozenset(["absent"])
FILES = ("container ", "file ")


class Ledger:
    def __init__(self, entries, size, patience):
        """Of a disk of that size, behind which the marks stand; the next write takes less than so
        many milliseconds."""
        self.patience = patience
        marks = [(position, entry.data.rstrip(b"\0").decode().split("\t"))
                 for position, entry in enumerate(entries) if entry.offset >= size]
        self.is_complete = bool(marks) and marks[-1][1] == ["ended"]
        self.positions, self.pages, page = [0], [{}], {}
        for number, (position, (verb, *words)) in enumerate(marks):
            if verb == "began":
                fact, *on_the_way = words
                page = {**page, fact: page.get(fact, ABSENT).union(
                    on_the_way, self._next_value(marks[number:], fact))}
            elif verb == "confirmed":
                page = {**page, words[0]: frozenset(words[1:])}
            self.positions.append(position + 1)
            self.pages.append(page)

    @staticmethod
    def _next_value(marks, fact):
        return next((words[2:] for _, words in marks if words[:2] == ["confirmed", fact]), [])

    def faults(self, position, found):
        """What is wrong with these facts after so many requests."""
        page = self.pages[bisect.bisect_right(self.positions, position) - 1]
        for fact, allowed in page.items():
            value = found.get(fact, "absent")
            if value not in allowed:
                yield f"{fact}: {value} instead of {' or '.join(sorted(allowed))}"
        for fact, value in found.items():
            if fact == "damaged" or fact not in page and fact.startswith(FILES):
                yield f"{fact}: {value}"
        if int(found.get("next write", self.patience)) >= self.patience:
            yield f"next write: {found.get('next write', 'none')}"
