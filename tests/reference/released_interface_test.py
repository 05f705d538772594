"""The released interface stays: only additions at the ends are allowed."""

import copy
import json
import sys
import unittest
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "tools"))

import interface_model  # noqa: E402
from released_interface import IDL, RELEASED, breaches, interface_facts  # noqa: E402


class ReleasedInterface(unittest.TestCase):
    def setUp(self):
        self.released = json.loads(RELEASED.read_text("ascii"))
        self.present = interface_facts(interface_model.read(IDL))
        self.members = next(k for k in self.released if k.startswith("interface _KwRtLib "))

    def broken(self, change):
        present = copy.deepcopy(self.present)
        change(present)
        return breaches(self.released, present)

    def test_the_interface_of_today_keeps_the_released_one(self):
        self.assertEqual(breaches(self.released, self.present), [])

    def test_a_new_member_at_the_end_is_allowed(self):
        self.assertEqual(self.broken(lambda p: p[self.members].append("396 method New()")), [])

    def test_a_new_class_is_allowed(self):
        self.assertEqual(self.broken(lambda p: p.update({"class QvtNew {}": ["_QvtNew"]})), [])

    def test_a_member_in_between_is_refused(self):
        self.assertNotEqual(self.broken(lambda p: p[self.members].insert(5, "6 method New()")), [])

    def test_a_member_that_goes_is_refused(self):
        self.assertNotEqual(self.broken(lambda p: p[self.members].pop()), [])

    def test_a_default_that_changes_is_refused(self):
        def change(present):
            facts = present[self.members]
            at = next(i for i, fact in enumerate(facts) if "= -1" in fact)
            facts[at] = facts[at].replace("= -1", "= 0")

        self.assertEqual(len(self.broken(change)), 1)

    def test_a_new_constant_at_the_end_is_allowed(self):
        key = "enumeration DispError_Const"
        self.assertEqual(self.broken(lambda p: p[key].append("DE_NEW = 32")), [])

    def test_an_argument_more_is_refused(self):
        def change(present):
            present[self.members][0] = present[self.members][0].replace("()", "(in optional long n)")

        self.assertEqual(len(self.broken(change)), 1)

    def test_another_dispatch_id_is_refused(self):
        def change(present):
            present[self.members][0] = present[self.members][0].replace("1 method", "2 method", 1)

        self.assertEqual(len(self.broken(change)), 1)

    def test_another_type_of_a_field_is_refused(self):
        def change(present):
            key = next(k for k in present if k.startswith("record BFILTER"))
            present[key][0] = present[key][0].replace("long Bits", "short Bits")

        self.assertEqual(len(self.broken(change)), 1)

    def test_events_that_go_are_refused(self):
        def change(present):
            present.pop(next(k for k in present if k.startswith("interface __ZipFile ")))

        self.assertEqual(len(self.broken(change)), 1)

    def test_a_constant_that_changes_is_refused(self):
        def change(present):
            present["enumeration DispError_Const"][0] = "DE_NOSHOW = 2"

        self.assertEqual(len(self.broken(change)), 1)

    def test_a_class_of_another_identifier_is_refused(self):
        def change(present):
            key = next(k for k in present if k.startswith("class kwCollection "))
            present["class kwCollection 0"] = present.pop(key)

        self.assertEqual(len(self.broken(change)), 1)


if __name__ == "__main__":
    unittest.main()
