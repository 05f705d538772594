"""The reference pages: whole, without dead ends, and usable in a browser."""

import re
import sys
import tempfile
import unittest
from html.parser import HTMLParser
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.common.by import By

REPOSITORY = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "tools"))

import make_reference  # noqa: E402

PHONE = (390, 800)


class Links(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links, self.ids = [], set()
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag == "a" and "href" in attributes:
            self.links.append(attributes["href"])
        if "id" in attributes:
            self.ids.add(attributes["id"])


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.site = make_reference.site()
        cls.pages = cls.site.make()

    def test_every_global_member_belongs_to_one_family(self):
        listed = [m.name for f in self.site.families for m in self.site.family_members(f)]
        self.assertEqual(sorted(listed), sorted(m.name for m in self.site.members["KwRtLib"]))
        self.assertEqual(len(listed), len(set(listed)))

    def test_every_member_argument_result_and_constant_is_documented(self):
        missing = []
        for name, members in self.site.members.items():
            for member in members:
                for operation in member.operations:
                    where = f"{name}.{member.name}"
                    if not operation.doc.summary:
                        missing.append(where)
                    named = [p.name for p in operation.parameters]
                    named += ["Result"] if operation.result else []
                    missing += [f"{where} {a}" for a in named if not operation.doc.arguments.get(a)]
        for enumeration in self.site.library.enumerations:
            missing += [name for name, _, text in enumeration.values if not text]
        for record in self.site.library.records:
            missing += [f"{record.name}.{name}" for _, name, text in record.fields if not text]
        self.assertEqual(missing, [])

    def test_every_failure_tells_its_number_text_way_and_source(self):
        without_source, unknown, untold = [], [], []
        for name, members in self.site.members.items():
            for operation in (o for member in members for o in member.operations):
                where = f"{name}.{operation.name}"
                if any(f.way == "recorded" for f in operation.failures) and not operation.sources:
                    without_source.append(where)
                for failure in operation.failures:
                    number = failure.number
                    if number.isdigit() and int(number) < 20000 and not failure.text:
                        unknown += [] if number in self.site.run_time_texts else [f"{where} {number}"]
                told = re.search(r"raises? run-time error|error state (?:then )?holds", operation.doc.text())
                if told and not operation.failures:
                    untold.append(where)
        self.assertEqual(unknown, [])
        self.assertEqual(untold, [])
        # Their record has no Source of the library's own.
        self.assertEqual([w for w in without_source if not w.startswith("KwRtLib.GetInfo")], [])

    def test_sources_are_those_that_the_code_records(self):
        literal = re.compile(r'L"((?:QvRtLibOle)?\.?(?:KwRtLib(?:Mod)?|modNamedPipes|kwPipeData|Module)\b[^"\\]*'
                             r'|QvRtLibOle\.KwRtLibMod\w+|(?:Qvt(?:BloomFilter|FileInfo|Notify)|QvPropertyBag)\.\w+)"')
        coded = {
            found
            for path in (REPOSITORY / "src").rglob("*.cpp")
            for found in literal.findall(path.read_text("utf-8"))
        }
        told = {
            source
            for members in self.site.members.values()
            for member in members
            for operation in member.operations
            for source in operation.sources
        }
        untold = {c for c in coded if not any(c in source for source in told)}
        # Made where records of several users are kept, which no member reaches.
        self.assertEqual(untold, {"QvRtLibOle.KwRtLibMod.Error_New, 0"})
        self.assertEqual({t for t in told if not any(c in t for c in coded)}, set())

    def test_every_link_has_its_page_and_its_place(self):
        parsed = {path: Links(text) for path, text in self.pages.items() if path.endswith(".html")}
        dead = []
        for path, page in parsed.items():
            for link in page.links:
                if re.match(r"\w+:", link):
                    continue
                target, _, place = link.partition("#")
                found = (Path(path).parent / target).as_posix() if target else path
                parts = []
                for part in found.split("/"):
                    if part == "..":
                        parts.pop()
                    elif part != ".":
                        parts.append(part)
                found = "/".join(parts)
                if found not in parsed or (place and place not in parsed[found].ids):
                    dead.append(f"{path}: {link}")
        self.assertEqual(dead, [])

    def test_every_help_context_has_its_page(self):
        members = [m for members in self.site.members.values() for m in members]
        contexts = [m.context for m in members if m.context is not None]
        self.assertEqual(len(contexts), len(set(contexts)))
        for context in contexts:
            self.assertIn(self.site.contexts[context], self.pages)

    def test_every_member_and_class_has_an_example(self):
        keys = [f"{c}.{m.name}" for c, members in self.site.members.items() for m in members]
        keys += list(self.site.members)
        self.assertEqual([key for key in keys if key not in self.site.examples], [])

    def test_examples_name_members_that_exist(self):
        known = {f"{c}.{m.name}" for c, members in self.site.members.items() for m in members}
        known |= set(self.site.members)
        self.assertEqual(sorted(set(self.site.examples) - known), [])


class Browser(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.root = Path(cls.folder.name) / "reference"
        make_reference.main(cls.root)
        cls.site = make_reference.site()
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage"):
            options.add_argument(argument)
        cls.browser = webdriver.Chrome(options=options)

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        cls.folder.cleanup()

    def open(self, path):
        self.browser.get((self.root / path).as_uri())

    def search(self, words):
        box = self.browser.find_element(By.ID, "search")
        box.clear()
        box.send_keys(words)
        return [a.text for a in self.browser.find_elements(By.CSS_SELECTOR, "#results a")]

    def test_a_name_finds_its_member_first_and_enter_opens_it(self):
        self.open("index.html")
        self.assertEqual(self.search("buffer_put")[0], "Buffer_Put")
        self.browser.find_element(By.ID, "search").send_keys("\n")
        self.assertEqual(self.browser.find_element(By.TAG_NAME, "h1").text, "Buffer_Put")

    def test_words_find_members_by_their_texts(self):
        self.open("KwRtLib/Buffer_Put.html")
        self.assertIn("Easter_Day", self.search("easter sunday year"))
        self.assertEqual(self.search("nosuchwordanywhere"), [])

    def test_a_constant_is_found_from_its_value_in_the_list(self):
        self.open("index.html")
        self.assertEqual(self.search("SRT_NOSPACES")[0], "SRT_NOSPACES")

    def test_a_help_context_leads_to_its_page(self):
        member = next(m for m in self.site.members["KwRtLib"] if m.name == "Buffer_Get")
        self.open("index.html")
        self.browser.get((self.root / "context.html").as_uri() + f"#{member.context}")
        self.assertEqual(self.browser.find_element(By.TAG_NAME, "h1").text, "Buffer_Get")

    def test_pages_fit_a_phone(self):
        self.browser.set_window_size(*PHONE)
        for path in ("index.html", "KwRtLib/Error_SetEx.html", "constants.html", "KwRtLib/index.html",
                     "formats/compressed-file.html", "QvtBloomFilter/index.html"):
            self.open(path)
            wide = self.browser.execute_script(
                "return document.documentElement.scrollWidth - document.documentElement.clientWidth"
            )
            self.assertEqual(wide, 0, path)


if __name__ == "__main__":
    unittest.main()
