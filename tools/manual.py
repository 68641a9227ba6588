"""Writes the manual page of tuvo from what the program says about itself:  manual.py PROGRAM FILE

Each --help text becomes a section: its first line, "Usage:", lists of options, positionals and commands, then prose, in
which an indented line is a command to try.
"""

import os
import re
import subprocess
import sys

ENVIRONMENT = {
    "TUVO_CATALOGUE": "The unit catalogue to use: a file, or a directory that holds unit.xml. --catalogue goes before it.",
    "BU_LOG_LEVEL": "The lowest level of messages that go to the log, on standard error.",
    "MOVRA_MEM_DEBUG": "Set to anything: the library looks for memory that is not freed.",
    "DISABLE_VX_HEAP": "Set to 1: memory comes from the system's heap alone.",
    "QD_TEMP_PATH": "The directory of temporary files.",
    "NO_COLOR": "Set to anything but nothing: messages have no colours.",
}


def said_by(program, *arguments):
    settings = {name: value for name, value in os.environ.items() if name not in ENVIRONMENT}
    return subprocess.run([program, *arguments], check=True, text=True, env=settings, stdout=subprocess.PIPE).stdout


def quoted(text):
    """Text as roff takes it literally."""
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq").replace("`", "\\(ga").replace("^", "\\(ha")
    return "\\&" + text if text.startswith(".") else text


def split_help(text):
    """The description, the usage, the lists as (title, [(name, text)]), and the lines after them."""
    head, *blocks = text.rstrip("\n").split("\n\n")
    description, usage = re.fullmatch(r"(.*?)\s*\nUsage: (.*)", head, re.S).groups()
    lists = []
    while blocks and re.match(r"(Options|Positionals|Subcommands):\n", blocks[0]):
        title, *lines = blocks.pop(0).split("\n")
        rows = []
        for line in lines:
            if name := re.match(r"  (\S.*?)(?:  +(.*))?$", line):
                rows.append([name[1], name[2] or ""])
            else:
                rows[-1][1] = (rows[-1][1] + " " + line.strip()).strip()
        lists.append((title.rstrip(":"), rows))
    return " ".join(description.split()), usage, lists, [line for block in blocks for line in [*block.split("\n"), ""]]


def list_lines(rows):
    for name, text in rows:
        yield from (".TP", "\\fB" + quoted(name) + "\\fR", quoted(text))


def prose_lines(lines):
    """Paragraphs are filled; indented lines stay as they are."""
    is_sample = False
    for line in [*lines, ""]:
        if line.startswith("  ") and not is_sample:
            yield from (".PP", ".nf", ".RS 4")
        elif is_sample and not line.startswith("  "):
            yield from (".RE", ".fi", ".PP")
        is_sample = line.startswith("  ")
        yield quoted(line.strip()) if line.strip() else ".PP"


def without_repeated_breaks(lines):
    previous = ".PP"
    for line in lines:
        if line != ".PP" or not previous.startswith((".PP", ".SH", ".SS")):
            yield line
        previous = line


def command_lines(program, name):
    description, usage, lists, prose = split_help(said_by(program, name, "--help"))
    yield from (f".SS tuvo {quoted(name)}", quoted(description) + ".", ".PP", "\\fB" + quoted(usage) + "\\fR")
    for _, rows in lists:
        yield from list_lines([row for row in rows if not row[0].startswith("-h,")])
    yield ".PP"
    yield from prose_lines(prose)


def page(program):
    description, usage, lists, prose = split_help(said_by(program, "--help"))
    version = said_by(program, "--version").split()[1]
    commands = [name for title, rows in lists if title == "Subcommands" for name, _ in rows]
    yield from (f'.TH TUVO 1 "" "TuvoUtil {version}" "User commands"', ".SH NAME",
                "tuvo \\- " + quoted(description[0].lower() + description[1:].rstrip(".")),
                ".SH SYNOPSIS", "\\fB" + quoted(usage) + "\\fR")
    for title, rows in lists:
        yield from (".SH " + {"Subcommands": "COMMANDS"}.get(title, title.upper()), *list_lines(rows))
    yield ".SH DESCRIPTION"
    yield from prose_lines(prose)
    yield ".SH THE COMMANDS"
    for name in commands:
        yield from command_lines(program, name)
    yield from (".SH ENVIRONMENT", *list_lines(ENVIRONMENT.items()))


def main(program, file):
    with open(file, "w", encoding="utf-8") as output:
        output.write("\n".join(without_repeated_breaks(page(os.path.abspath(program)))) + "\n")


main(*sys.argv[1:])
