"""The reference as pages of HTML: {path: text}."""

import html
import json
import re

import markdown

from .vb_text import argument_text, failure_texts, run_time_errors, signature, type_name

MOST_LINKS = 10
KINDS = {"propget": "property", "propput": "property", "propputref": "property", "event": "event"}


def escape(text):
    return html.escape(text, quote=False)


class Member:
    """Everything of one name in one interface: a method, an event, or a property's operations."""

    def __init__(self, class_name, name, operations, context):
        self.class_name, self.name, self.operations = class_name, name, operations
        self.context = context
        self.path = f"{class_name}/{name}.html"
        self.kind = KINDS.get(operations[0].kind, "function" if operations[0].result else "method")

    @property
    def summary(self):
        return self.operations[0].doc.summary

    @property
    def first_sentence(self):
        return re.split(r"(?<=[.;]) ", self.summary, maxsplit=1)[0].rstrip(";.") + "."


def help_context(class_number, base, dispid):
    """As the type library has it; a class's default member and enumerator share the class's own."""
    return class_number * 1000 + base + dispid if dispid > 0 else None


def members_of(library):
    """{class name: [Member]} in the order of the interfaces."""
    result = {}
    for number, coclass in enumerate(library.classes, 1):
        members = []
        for interface, base in ((coclass.interface, 0), (coclass.events, 900)):
            names = {}
            for operation in interface.operations if interface else ():
                names.setdefault(operation.name, []).append(operation)
            members += [
                Member(coclass.name, name, operations, help_context(number, base, operations[0].dispid))
                for name, operations in names.items()
            ]
        result[coclass.name] = members
    return result


class Site:
    def __init__(self, library, families, examples, articles, error_table):
        """families: [{id, title, text, modules}]; examples: [(file, members, lines)];
        articles: {"guide" or "formats": {name: Markdown text}}; error_table: the source of the
        server's texts of run-time errors."""
        self.run_time_texts = run_time_errors(error_table)
        self.library, self.families, self.articles = library, families, articles
        self.members = members_of(library)
        self.examples, self.companions = {}, {}
        for _, names, lines in examples:
            keys = [n if "." in n or n in self.members else f"KwRtLib.{n}" for n in names]
            for key in keys:
                self.examples.setdefault(key, []).append(lines)
                self.companions.setdefault(key, []).extend(k for k in keys if k != key)
        self.family_of = {m: f for f in families for m in f["modules"]}
        self.targets = {m.name: m.path for m in self.members["KwRtLib"] + self.members["QvRtLib"]}
        of_classes = [m for name, ms in self.members.items() if name != "KwRtLib" for m in ms]
        self.own_paths = {m.path for m in of_classes}
        self.member_names = {m.name for m in of_classes}
        self.targets |= {c.name: f"{c.name}/index.html" for c in library.classes}
        for enumeration in library.enumerations:
            self.targets[enumeration.name] = f"constants.html#{enumeration.name}"
            self.targets |= {n: f"constants.html#{n}" for n, _, _ in enumeration.values}
        self.contexts, self.pages = {}, {}

    def target_of(self, word, page, is_member):
        """The page of a name; is_member: it stands behind a dot."""
        own = f"{page.split('/')[0]}/{word}.html"
        if own in self.own_paths and (is_member or re.search(r"_|[a-z][A-Z]", word)):
            return own
        if is_member and word in self.member_names:
            return None
        return self.targets.get(word)

    def linked(self, text, page, own=()):
        """Escaped text with every name of the library as a link; own: names left as they are."""
        up = "../" * page.count("/")

        def link(match):
            word = match[2]
            target = self.target_of(word, page, match[1] == ".")
            if target is None or target == page or word in own:
                return match[0]
            return f'{match[1]}<a href="{up}{target}">{word}</a>'

        return re.sub(r"(\.?)\b([A-Za-z][A-Za-z0-9]*(?:_\w+)*)\b", link, escape(text))

    def page(self, path, title, body, crumbs=()):
        up = "../" * path.count("/")
        trail = "".join(f'<a href="{up}{target}">{escape(text)}</a> / ' for text, target in crumbs)
        self.pages[path] = f"""<!doctype html>
<html lang="en"><head><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{escape(title)} - QvRtLib</title>
<link rel="stylesheet" href="{up}style.css"></head>
<body data-up="{up}"><header><a class="home" href="{up}index.html">QvRtLib</a>
<label class="search">Search <input id="search" type="search" autocomplete="off"
 placeholder="member, class, constant or words"></label></header>
<ol id="results" hidden></ol>
<main><p class="trail">{trail}{escape(title)}</p>
{body}
</main>
<script src="{up}search-index.js"></script><script src="{up}search.js"></script>
</body></html>
"""

    def member_table(self, members, page):
        up = "../" * page.count("/")
        rows = "".join(
            f'<tr><td><a href="{up}{m.path}">{m.name}</a></td>'
            f"<td>{self.linked(m.first_sentence, page, (m.name,))}</td></tr>\n"
            for m in members
        )
        return f"<table class=members>{rows}</table>" if rows else ""

    def argument_table(self, operations, page):
        rows, seen = [], set()
        for operation in operations:
            arguments = {p.name for p in operation.parameters}
            for parameter in operation.parameters:
                if parameter.name in seen:
                    continue
                seen.add(parameter.name)
                declared = self.linked(argument_text(self.library, parameter), page, arguments)
                text = self.linked(operation.doc.arguments.get(parameter.name, ""), page, arguments)
                rows.append(f"<tr><td><code>{declared}</code></td><td>{text}</td></tr>\n")
        return f"<h2>Arguments</h2><table>{''.join(rows)}</table>" if rows else ""

    def result_text(self, operations, page):
        for operation in operations:
            if operation.result:
                name, is_array = type_name(operation.result.type)
                shown = self.linked(name + ("()" if is_array else ""), page)
                text = self.linked(operation.doc.arguments.get("Result", ""), page)
                return f"<h2>Result</h2><p><code>{shown}</code>: {text}</p>"
        return ""

    def error_table(self, operations, page):
        failures = [f for o in operations for f in o.failures]
        sources = dict.fromkeys(s for o in operations for s in o.sources)
        if not failures and not sources:
            return ""
        rows = []
        for failure in failures:
            number, text = failure_texts(failure, self.run_time_texts)
            cause = self.linked(failure.cause, page)
            rows.append(
                f"<tr><td>{escape(number)}</td><td>{escape(text)}</td>"
                f"<td>{failure.way}</td><td>{cause}</td></tr>\n"
            )
        head = "<tr><th>Number</th><th>Description</th><th>How</th><th>When</th></tr>\n"
        text = "<h2>Errors</h2>" + (f"<table class=errors>{head}{''.join(rows)}</table>" if rows else "")
        if sources:
            listed = ", ".join(f"<code>{escape(source)}</code>" for source in sources)
            text += f"<p>Source in the error record: {listed}</p>"
        return text

    def example_text(self, key, page):
        blocks = self.examples.get(key, [])
        if not blocks:
            return ""
        shown = "".join(
            "<pre>" + self.linked("\n".join(lines).replace("'->", "' ->"), page) + "</pre>"
            for lines in blocks
        )
        note = "<p><small>Show prints a value; behind ' -> stands what comes out.</small></p>"
        return f"<h2>Example</h2>{shown}{note}"

    def see_also(self, member, siblings):
        """Members of the same example, then those that stand near."""
        by_key = {f"{m.class_name}.{m.name}": m for ms in self.members.values() for m in ms}
        found = [by_key[k] for k in self.companions.get(f"{member.class_name}.{member.name}", ()) if k in by_key]
        at = siblings.index(member)
        found += siblings[max(0, at - 3) : at] + siblings[at + 1 : at + 4]
        names = {m.path: m.name if m.class_name == member.class_name else f"{m.class_name}.{m.name}" for m in found}
        links = ", ".join(f'<a href="../{path}">{name}</a>' for path, name in list(names.items())[:MOST_LINKS])
        return f"<h2>See also</h2><p>{links}</p>" if links else ""

    def member_page(self, member, siblings, crumbs):
        page = member.path
        own = {member.name}
        signatures = "\n".join(signature(self.library, o) for o in member.operations)
        remarks = "".join(
            f"<p>{self.linked(text, page, own)}</p>"
            for text in dict.fromkeys(o.doc.summary for o in member.operations)
        )
        key = f"{member.class_name}.{member.name}"
        self.page(
            page,
            member.name,
            f"<h1>{member.name}</h1><pre class=signature>{self.linked(signatures, page, own)}</pre>"
            + remarks
            + self.argument_table(member.operations, page)
            + self.result_text(member.operations, page)
            + self.error_table(member.operations, page)
            + self.example_text(key, page)
            + self.see_also(member, siblings),
            crumbs,
        )
        if member.context is not None:
            self.contexts[member.context] = page

    def family_members(self, family):
        return [
            m for m in self.members["KwRtLib"] if m.operations[0].header in family["modules"]
        ]

    def make_families(self):
        for family in self.families:
            path = f"families/{family['id']}.html"
            members = self.family_members(family)
            body = f"<h1>{escape(family['title'])}</h1><p>{self.linked(family['text'], path)}</p>"
            self.page(path, family["title"], body + self.member_table(members, path))
            for member in members:
                self.member_page(member, members, [(family["title"], path)])

    def make_classes(self):
        for number, coclass in enumerate(self.library.classes, 1):
            name, members = coclass.name, self.members[coclass.name]
            path = f"{name}/index.html"
            if name == "KwRtLib":
                table = "".join(
                    f"<h2><a href='../families/{f['id']}.html'>{escape(f['title'])}</a></h2>"
                    + self.member_table(self.family_members(f), path)
                    for f in self.families
                )
            else:
                table = self.member_table(members, path)
                for member in members:
                    self.member_page(member, members, [(name, path)])
            made = "its members are global" if coclass.is_global else f'"QvRtLibOle.{name}"'
            self.page(
                path,
                name,
                f"<h1>{name}</h1><p>{self.linked(coclass.interface.doc.summary, path, (name,))}</p>"
                f"<p>Class identifier {{{coclass.clsid}}}; {made}.</p>"
                + self.example_text(name, path)
                + table,
            )
            self.contexts[number * 1000] = path

    @staticmethod
    def jumps(title, names):
        listed = "".join(f'<li><a href="#{name}">{name}</a></li>' for name in names)
        return f"<details><summary>{title}</summary><ul class=columns>{listed}</ul></details>"

    def make_constants(self):
        enumerations = sorted(self.library.enumerations, key=lambda e: e.name.lower())
        constants = sorted({n for e in enumerations for n, _, _ in e.values}, key=str.lower)
        parts = [
            "<h1>Constants</h1><p>The constants of each enumeration; those of "
            '<a href="QvRtLib/index.html">QvRtLib</a> are properties of a global object.</p>',
            self.jumps("Enumerations", [e.name for e in enumerations]),
            self.jumps("All constants by name", constants),
        ]
        for enumeration in enumerations:
            rows = "".join(
                f'<tr id="{name}"><td><code>{name}</code></td><td class=number>{value}</td>'
                f"<td>{self.linked(text, 'constants.html', (name,))}</td></tr>\n"
                for name, value, text in enumeration.values
            )
            parts.append(
                f'<h2 id="{enumeration.name}">{enumeration.name}</h2>'
                f"<p>{self.linked(enumeration.doc.summary, 'constants.html')}</p>"
                f"<table>{rows}</table>"
            )
        self.page("constants.html", "Constants", "".join(parts))

    def make_articles(self):
        for kind, articles in self.articles.items():
            for name, text in articles.items():
                path = f"{kind}/{name}.html"
                body = markdown.markdown(text, extensions=["tables", "fenced_code"])
                body = re.sub(r'href="([\w./-]+)\.md"', r'href="\1.html"', body)
                body = re.sub(
                    r"<code>(\w+)</code>",
                    lambda m: f"<code>{self.linked(m[1], path)}</code>",
                    body,
                )
                self.page(path, self.article_title(kind, name), body)

    def article_title(self, kind, name):
        return self.articles[kind][name].split("\n", 1)[0].lstrip("# ")

    def make_index(self):
        def listed(items):
            return "".join(f'<li><a href="{path}">{escape(text)}</a>{more}</li>' for path, text, more in items)

        guides = [(f"guide/{n}.html", self.article_title("guide", n), "") for n in self.articles["guide"]]
        formats = [(f"formats/{n}.html", self.article_title("formats", n), "") for n in self.articles["formats"]]
        families = [
            (f"families/{f['id']}.html", f["title"], f" <small>{len(self.family_members(f))}</small>")
            for f in self.families
        ]
        classes = [(f"{c.name}/index.html", c.name, "") for c in self.library.classes]
        self.page(
            "index.html",
            "Reference",
            f"<h1>QvRtLib reference</h1><p>{escape(self.library.doc.text())}. Type a name or a word above, "
            "or choose.</p>"
            f"<h2>Guides</h2><ul>{listed(guides)}</ul>"
            f"<h2>Functions by family</h2><ul class=columns>{listed(families)}</ul>"
            f"<h2>Classes</h2><ul class=columns>{listed(classes)}</ul>"
            f'<h2>Constants and formats</h2><ul><li><a href="constants.html">All constants</a></li>'
            f"{listed(formats)}</ul>",
        )

    def make_contexts(self):
        """context.html#1042 leads to the page of a help context, as the type library gives it."""
        script = (
            f"const pages = {json.dumps(self.contexts)};\n"
            "const page = pages[location.hash.slice(1)];\n"
            'location.replace(page ?? "index.html");'
        )
        self.pages["context.html"] = (
            f'<!doctype html><meta charset="utf-8"><title>QvRtLib</title><script>{script}</script>\n'
        )

    def make_search_index(self):
        rows = []
        for name, members in self.members.items():
            rows.append([name, f"{name}/index.html", "class", self.class_text(name)])
            rows += [
                [m.name if name == "KwRtLib" else f"{name}.{m.name}", m.path, m.kind, self.full_text(m)]
                for m in members
            ]
        for enumeration in self.library.enumerations:
            for constant, value, text in enumeration.values:
                rows.append([constant, f"constants.html#{constant}", f"constant, {value}", text])
        for kind, articles in self.articles.items():
            rows += [
                [self.article_title(kind, n), f"{kind}/{n}.html", kind, " ".join(text.split())]
                for n, text in articles.items()
            ]
        self.pages["search-index.js"] = "const searchIndex = " + json.dumps(rows, indent=0) + ";\n"

    def class_text(self, name):
        return next(c.interface.doc.text() for c in self.library.classes if c.name == name)

    @staticmethod
    def full_text(member):
        return " ".join(o.doc.text() for o in member.operations)

    def make(self):
        self.make_families()
        self.make_classes()
        self.make_constants()
        self.make_articles()
        self.make_index()
        self.make_contexts()
        self.make_search_index()
        return self.pages
