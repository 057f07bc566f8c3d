"""The table's rows, in the order in which they are defined."""

ROWS = []


class Row:
    def __init__(self, group, name, play, alone):
        self.group = group
        self.name = name
        self.play = play
        self.alone = alone


def row(group, name, alone=False):
    """Makes a function, which is given the harness.Fault, a row. A row that measures what other
    rows would spoil runs alone."""
    def add(play):
        ROWS.append(Row(group, name, play, alone))
        return play

    return add
