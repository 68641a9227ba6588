"""Shows headers and guides to Doxygen.

usage: doxygen_filter.py FILE     writes a header or a guide, as Doxygen shall read it, to standard output

The comments of a header, which stand there for its readers, become documentation. The one at the top is about the file,
one in front of declarations about all that follow without an empty line between them, one behind a member about that
member. A type without a comment is what the file is about. Indented lines are examples and tables and keep their layout.

A guide's headings get names that links to them lead to. Its links to headers lead to their pages; those to files that are
no part of the reference become plain text.
Every line stays where it is, so that what Doxygen complains of is found in the file.
"""

import html
import pathlib
import re
import sys

HEADING = re.compile(r"\s*// -{4}")
COMMENT = re.compile(r"(\s*)//(?: |$)(.*)")
BEHIND_A_MEMBER = re.compile(r"(.*[;,{}\w)]\s*)// (?!namespace|NOLINT)(.*)")
OPENS_A_SCOPE = re.compile(r"\s*(class|struct|union|enum|namespace|template)\b|\s*#")
ITEM = re.compile(r"\s*(- |\d+\. )")


def escape(text):
    """Text that Doxygen takes for nothing but text; what stands in backquotes is code."""
    text = re.sub(r"([@#%*\\]|::|\.\.\.)", r"\\\1", text)
    text = html.escape(text, quote=False).replace('"', "&quot;")
    return re.sub(r"`(\w[^`]*)`", r"<code>\1</code>", text)


def layouts(texts):
    """Tells line by line whether it keeps its layout: indented, and no part of a list."""
    is_list = is_layout = False
    for i, text in enumerate(texts):
        if text.strip():
            is_list = bool(ITEM.match(text)) or (is_list and text.startswith(" "))
            is_layout = text.startswith("  ") and not is_list
        else:  # an empty line in an example is part of it
            is_list = False
            is_layout = is_layout and i + 1 < len(texts) and texts[i + 1].startswith("  ")
        yield is_layout


def documentation(texts, command):
    """The lines of a comment, without their slashes, as one block of documentation."""
    lines = []
    was_layout = False
    for text, is_layout in zip(texts, layouts(texts)):
        mark = "" if is_layout == was_layout else ("@verbatim " if is_layout else "@endverbatim ")
        lines.append(mark + (text[2:] if is_layout else escape(text)))
        was_layout = is_layout
    for i in range(lines.index("") if "" in lines else len(lines)):  # the first sentence is the summary
        lines[i], found = re.subn(r"\.(?= |$)", ". @details", lines[i], count=1)
        if found:
            break
    lines[0] = "/** @brief " + lines[0]
    lines[-1] += (" @endverbatim" if was_layout else "") + command + " */"
    return lines


def declarations(lines, start):
    """The places of the declarations that share the comment in front of `start`."""
    places, i, depth, is_complete = [], start, 0, True
    while i < len(lines) and lines[i].strip() and not COMMENT.fullmatch(lines[i]):
        line = re.sub(r"//.*", "", lines[i]).rstrip()
        if depth == 0 and (re.match(r"\s*(\}|\w+:$)", line) or (OPENS_A_SCOPE.match(line) and not line.endswith(";"))):
            break
        if is_complete:
            places.append(i)
        depth += line.count("{") - line.count("}")
        is_complete = depth == 0 and line.endswith((";", "}"))
        i += 1
    return places


def again(block, first):
    """The documentation of a declaration for those that follow it, within their line."""
    if any(ITEM.match(line) or "@verbatim" in line for line in block):
        name = re.search(r"(\w+)[(;]", first)[1]
        return f"/** @copydoc {name} */ "
    return " ".join(line or "<p>" for line in block) + " "


def is_bare_type(lines, i):
    """Whether a type is defined here without a comment in front of it."""
    defined = lines[i + 1] if lines[i].startswith("template") else lines[i]
    return (re.match(r"(class|struct) ", defined) and not defined.endswith(";") and i > 0
            and not COMMENT.fullmatch(lines[i - 1]) and not lines[i - 1].startswith("template"))


def documented(lines):
    """The lines of a header, each in its place."""
    about = []  # the file, and the type that it is for
    repeated = {}  # what stands in front of further declarations, by their lines
    i = 0
    while i < len(lines):
        end = i
        while end < len(lines) and COMMENT.fullmatch(lines[end]) and not HEADING.match(lines[end]):
            end += 1
        if end > i:
            block = documentation([COMMENT.fullmatch(line)[2] for line in lines[i:end]], "" if i > 0 else " @file")
            about = about or block
            yield from block
            repeated.update((place, again(block, lines[end])) for place in declarations(lines, end)[1:] if i > 0)
            i = end
            continue
        if HEADING.match(lines[i]):
            yield ""
        elif is_bare_type(lines, i):
            summary = " ".join(about[:about.index("")] if "" in about else about).split(" @details")[0].split(" @file")[0]
            yield f"{summary} @details More stands at the top of its header. */ {lines[i]}"
        else:
            behind = BEHIND_A_MEMBER.fullmatch(lines[i])
            yield repeated.get(i, "") + (f"{behind[1]}///< {escape(behind[2])}" if behind else lines[i])
        i += 1


def place(page, heading):
    """The name of a heading: of a page, and as links write it."""
    return f"at_{page}_{heading}"


def linked(line):
    """A line of a guide with links that work in the reference, and with the percent signs of its formats."""
    if heading := re.fullmatch(r"##+ (.*)", line):
        name = re.sub(r"[^\w\- ]", "", heading[1].lower()).strip().replace(" ", "-")
        return f"{line} {{#{place(path.stem, name)}}}"
    line = re.sub(r"\[`?([^\]`]*)`?\]\([^():]*?include/(\w+/\w+\.h)\)", r"[\1](@ref \2)", line)
    line = re.sub(r"\]\((?:[^():]*?(\w[\w-]*)\.md)?#([\w-]+)\)",
                  lambda link: f"](@ref {place(link[1] or path.stem, link[2])})", line)
    line = re.sub(r"(?<!!)\[([^\]]*)\]\((?!@ref|\w+:|[^()]*\.md\b)[^()]*\)", r"\1", line)
    return re.sub(r"`([^`]*%\w[^`]*)`", lambda code: f"<code>{escape(code[1])}</code>", line)


def guide(lines):
    """The lines of a guide, code and output as they are."""
    is_code = False
    for line in lines:
        is_code ^= line.startswith("```")
        yield line if is_code else linked(line)


def chapter(lines):
    """The lines of a chapter, whose heading gets a name."""
    yield f"{lines[0]} {{#guide_{path.stem}}}"
    yield from guide(lines[1:])


def contents(lines):
    """The lines of the guide's first page, whose chapters are pages below it."""
    for line in guide(lines):
        yield re.sub(r"\[([^\]]*)\]\(guide/(\w+)\.md\)", r'@subpage guide_\2 "\1"', line)


path = pathlib.Path(sys.argv[1])
if path.suffix == ".h":
    shown = documented
elif path.parent.name == "guide":
    shown = chapter
else:
    shown = contents if path.name == "guide.md" else guide
print("\n".join(shown(path.read_text(encoding="utf-8").split("\n"))))
