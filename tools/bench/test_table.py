#!/usr/bin/python3
"""The rules that turn measurements into verdicts."""

import unittest

from tools.bench import table


class Verdicts(unittest.TestCase):
    def test_ratio_of_medians(self):
        row = table.Row("r", 1.5, "ms", [(10, 10), (30, 20), (90, 21)])
        self.assertEqual(row.figure, 1.5)
        self.assertEqual(row.verdict, "ok")

    def test_above_the_aim_is_a_miss(self):
        self.assertEqual(table.Row("r", 1.5, "ms", [(151, 100)]).verdict, "miss")

    def test_nothing_measured_is_no_success(self):
        self.assertEqual(table.Row("r", 1.5, "ms").verdict, "miss")
        self.assertIn("miss", table.as_text([table.Row("r", 1.5, "ms")]))

    def test_skipped_is_never_ok(self):
        row = table.Row("r", 1.5, "ms", skipped="no reason")
        self.assertEqual(row.verdict, "skipped: no reason")
        self.assertNotIn("figure", row.as_json())

    def test_without_an_aim_it_is_neither(self):
        row = table.Row("r", None, "million", [(30, 10)])
        self.assertEqual((row.figure, row.verdict), (3, "no aim"))
        self.assertIn("no aim", table.as_markdown([row]))

    def test_absolute_figure(self):
        row = table.Row("r", 16, "MiB", [(17, None), (15, None), (15.5, None)])
        self.assertEqual((row.figure, row.verdict), (15.5, "ok"))

    def test_spread_is_the_middle_half(self):
        row = table.Row("r", 9, "ms", [(n, 1) for n in (1, 2, 3, 4, 100)])
        self.assertEqual(row.spread, (2, 4))


class Growth(unittest.TestCase):
    def test_exponents(self):
        self.assertAlmostEqual(table.exponent([(10, 5), (100, 9), (1000, 90)]), 1)
        self.assertAlmostEqual(table.exponent([(1000, 2), (100, 0.02)]), 2)


class Record(unittest.TestCase):
    def test_only_the_block_changes(self):
        text = "a\n<!-- figures -->\nold\n<!-- end of figures -->\nb\n"
        self.assertEqual(table.replaced_block(text, "new"),
                         "a\n<!-- figures -->\nnew\n<!-- end of figures -->\nb\n")

    def test_a_text_without_place_is_refused(self):
        with self.assertRaises(ValueError):
            table.replaced_block("a", "new")


if __name__ == "__main__":
    unittest.main()
