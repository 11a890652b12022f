"""read_page.py PAGE: what a reader of HTML finds in a page of wqstat, one finding to a line, its parts separated by tabs.

title, lang, script and address (of anything that would be fetched), figure (path and value), decision (path and word), text (of each
element that shows one) and command.
"""
import html.parser
import sys


class Page(html.parser.HTMLParser):
    RUNNING = {"span", "bdi"}  # parts of the text around them
    VOID = {"meta", "br", "link", "img", "input", "hr"}

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.open = []
        self.texts = []
        self.drops_newline = False  # behind the tag of a pre element, as browsers do

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.drops_newline = tag == "pre"
        if tag == "html":
            found("lang", values.get("lang", ""))
        if tag in ("script", "iframe", "object", "embed", "form", "base"):
            found("script", tag)
        for name, value in attributes:
            if name.startswith("on"):
                found("script", name)
            if name in ("src", "href", "xlink:href", "srcset", "data", "action") and not (value or "").startswith("#"):
                found("address", value)
        if tag == "data":
            self.figure = (values["class"], values["value"])
        if tag not in self.VOID:
            self.open.append((tag, values.get("class", "")))
            self.texts.append("")

    def handle_startendtag(self, tag, attributes):
        self.handle_starttag(tag, attributes)
        if tag not in self.VOID:
            self.handle_endtag(tag)

    def handle_endtag(self, tag):
        while self.open:
            name, style = self.open.pop()
            text = self.texts.pop()
            if name != tag:
                found("unclosed", name)
                continue
            if name == "data":
                found("figure", *self.figure, text)
            if name == "title" and ("svg", "") not in self.open and not any(each[0] == "svg" for each in self.open):
                found("title", text)
            elif name == "code":
                found("command", text)
            elif name == "span" and style:
                found("decision", style, text)
            elif name in self.RUNNING:
                self.handle_data(text)
            elif text.strip() and name != "style":
                found("text", text)
            return
        found("unopened", tag)

    def handle_data(self, data):
        if self.drops_newline and data.startswith("\n"):
            data = data[1:]
        self.drops_newline = False
        if self.texts:
            self.texts[-1] += data


def found(*parts):
    line = "\t".join(part.replace("\\", "\\\\").replace("\n", "\\n").replace("\t", "\\t") for part in parts)
    sys.stdout.buffer.write((line + "\n").encode())


page = Page()
with open(sys.argv[1], encoding="utf-8", newline="") as file:
    page.feed(file.read())
page.close()
for name, _ in page.open:
    found("unclosed", name)
