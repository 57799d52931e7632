#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the string tables against each other and against the code.

check_translations.py SOURCE_FOLDER prints a sentence for each fault and exits 1 when there is one.
"""

import collections
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

TABLES = "resources/translations"
TABLE_NAME = re.compile(r"zorvex_(\w+)\.ts$")
SOURCE_LANGUAGE = "en"

# Where texts are used. Tests ask for keys that do not exist, on purpose.
CODE_FOLDERS = ("app", "disks", "filesystems", "operations", "platform", "resources", "tools", "ui")
CODE_SUFFIXES = (".cpp", ".h", ".ui")

# Letters that Alt reaches at the same moment must differ. Of the titles that one button takes in turn, only one is
# there at a time.
MENU_BAR = ("FILE_MENU_TITLE", "EDIT_MENU_TITLE", "DISK_MENU_TITLE", "HELP_MENU_TITLE")
MOUNT_BUTTON = ("MOUNT_BUTTON_TITLE", "UNMOUNT_BUTTON_TITLE", "EJECT_BUTTON_TITLE")
# The Disk menu has the same items but the one that copies.
ROW_MENU = ("FORMAT_MENU_ITEM_TITLE", "ERASE_DISK_MENU_ITEM_TITLE", "CHECK_MENU_ITEM_TITLE", "REPAIR_MENU_ITEM_TITLE",
            "COPY_MENU_ITEM_TITLE", "COPY_DEVICE_PATH_MENU_ITEM_TITLE", "SHOW_IN_FILE_MANAGER_MENU_ITEM_TITLE")
TAB_PAGES = {
    "Info page": (),
    "Format page": ("FORMAT_FILESYSTEM_CAPTION", "FORMAT_LABEL_CAPTION", "FORMAT_BUTTON_TITLE"),
    "Maintenance page": ("CHECK_BUTTON_TITLE", "REPAIR_BUTTON_TITLE"),
}
MNEMONIC_CONTEXTS = {
    "File menu": ("REFRESH_MENU_ITEM_TITLE", "CLOSE_MENU_ITEM_TITLE", "QUIT_MENU_ITEM_TITLE"),
    "Edit menu": ("UNDO_MENU_ITEM_TITLE", "CUT_MENU_ITEM_TITLE", "COPY_MENU_ITEM_TITLE", "PASTE_MENU_ITEM_TITLE",
                  "SELECT_ALL_MENU_ITEM_TITLE"),
    "Help menu": ("MANUAL_MENU_ITEM_TITLE", "ABOUT_MENU_ITEM_TITLE"),
    "forced unmount question": ("FORCE_UNMOUNT_BUTTON_TITLE", "CANCEL_UNMOUNT_BUTTON_TITLE"),
    "question before closing": ("CLOSE_QUESTION_STOP_BUTTON_TITLE", "CLOSE_QUESTION_WAIT_BUTTON_TITLE"),
    "question for a passphrase": ("UNLOCK_BUTTON_TITLE", "CANCEL_UNLOCK_BUTTON_TITLE"),
    "format question": ("CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT",
                        "CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT"),
    "erase disk sheet": ("FORMAT_FILESYSTEM_CAPTION", "FORMAT_LABEL_CAPTION", "ERASE_DISK_SCHEME_CAPTION",
                         "ERASE_DISK_CONTINUE_BUTTON_TEXT", "CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT"),
} | {
    f"menu of a row with {button}": tuple(dict.fromkeys((button, "EJECT_BUTTON_TITLE"))) + ROW_MENU
    for button in MOUNT_BUTTON
} | {
    f"{page} with {button}": MENU_BAR + (button,) + keys
    for page, keys in TAB_PAGES.items() for button in MOUNT_BUTTON
}

# What the desktop shows is there for whoever gets a table: Portuguese of any region gets pt_BR, Hong Kong gets zh_TW.
ALSO_SERVED = {"pt_BR": "pt", "zh_TW": "zh_HK"}
DESKTOP_TEXTS = {
    "resources/desktop/org.zorvex.DiskManager.desktop": re.compile(r"^Comment\[(\w+)\]=", re.MULTILINE),
    "resources/desktop/org.zorvex.DiskManager.metainfo.xml": re.compile(r'<summary xml:lang="(\w+)"'),
    "resources/polkit/org.zorvex.DiskManager.policy": re.compile(r'<message xml:lang="(\w+)"'),
}

# What a label must not contain, with spaces between.
LIST_OF_SIGNS = '" * / : < > ? \\ |'

# How a caption ends that ends in a colon.
COLONS = {"fr": "\u00a0:", "zh_CN": "：", "zh_TW": "："}

Message = collections.namedtuple("Message", "key source comment translation finished")

# Comments are dropped, strings kept: a string may hold what looks like a comment, and the other way round.
CODE_TOKEN = re.compile(r'R"([^(\s]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/', re.DOTALL)
LOOKUP = re.compile(r"\b(?:localizedString|qtTrId|QT_TRID_NOOP)\s*\(")
KEY_LITERAL = re.compile(r'"(\w+)"')
INTERFACE_KEY = re.compile(r'<string\b[^>]*\bid="([^"]*)"')
PLACEHOLDER = re.compile(r"%(?:(\d+)\$)?@")


def read_table(path):
    """The messages of a table in their order."""
    messages = []
    for element in ElementTree.parse(path).getroot().iter("message"):
        translation = element.find("translation")
        text = "" if translation is None else translation.text or ""
        state = "missing" if translation is None else translation.get("type", "finished")
        messages.append(Message(element.get("id", ""), element.findtext("source", ""),
                                element.findtext("extracomment", ""), text, state == "finished"))
    return messages


def without_comments(code):
    return CODE_TOKEN.sub(lambda token: token[0] if token[0].endswith('"') else " ", code)


def arguments_at(code, start):
    """What stands in the parentheses that are open at the position."""
    depth = 1
    for position in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[position], 0)
        if depth == 0:
            return code[start:position]
    return code[start:]


def keys_in_code(code):
    code = without_comments(code)
    return {key for call in LOOKUP.finditer(code)
            for key in KEY_LITERAL.findall(arguments_at(code, call.end()))}


def used_keys(root):
    """Each key that code or an interface file asks for, with the first file that does."""
    used = {}
    files = (path for folder in CODE_FOLDERS for path in sorted((root / folder).rglob("*")))
    for path in files:
        if path.suffix not in CODE_SUFFIXES:
            continue
        text = path.read_text(encoding="utf-8")
        keys = INTERFACE_KEY.findall(text) if path.suffix == ".ui" else keys_in_code(text)
        for key in keys:
            used.setdefault(key, path.relative_to(root))
    return used


def placeholder_faults(text):
    """What is wrong with a format by itself."""
    numbered = {bool(number) for number in PLACEHOLDER.findall(text)}
    if len(numbered) > 1:
        yield "mixes %@ with %1$@"
    if "%" in PLACEHOLDER.sub("", text.replace("%%", "")):
        yield "has a % that is neither a placeholder nor %%"


def placeholders(text):
    """The numbers of the arguments that a format takes."""
    found = PLACEHOLDER.findall(text.replace("%%", ""))
    return sorted(int(number) if number else turn for turn, number in enumerate(found, start=1))


def mnemonics(text):
    return [letter.casefold() for letter in re.findall(r"&(.)", text.replace("&&", ""))]


def table_faults(language, messages):
    counts = collections.Counter(message.key for message in messages)
    for key, count in counts.items():
        if count > 1:
            yield f"{language}: {key} is there {count} times."
    for message in messages:
        if not message.finished:
            yield f"{language}: {message.key} is not marked as finished."
        if not message.translation.strip():
            yield f"{language}: {message.key} has no text."
        if not message.comment.strip():
            yield f"{language}: {message.key} has no comment for translators."


def comparison_faults(language, table, english):
    """What differs from the English table and must not."""
    for key in english.keys() - table.keys():
        yield f"{language}: {key} is missing."
    for key in table.keys() - english.keys():
        yield f"{language}: {key} is not in the English table."
    for key in table.keys() & english.keys():
        text, original = table[key].translation, english[key].translation
        if table[key].source != original:
            yield f"{language}: {key} was translated from another English text than “{original}”."
        if placeholders(text) != placeholders(original):
            yield f"{language}: {key} has other placeholders than the English text."
        if placeholders(original):
            for fault in placeholder_faults(text):
                yield f"{language}: {key} {fault}."


def mnemonic_faults(language, table):
    expected = {key for keys in MNEMONIC_CONTEXTS.values() for key in keys}
    for key, message in table.items():
        count = len(mnemonics(message.translation))
        if key in expected and count != 1:
            yield f"{language}: {key} must mark one letter with &, and marks {count}."
        if key not in expected and count:
            yield f"{language}: {key} marks a letter with &, and belongs to no menu, page or question."
    for context, keys in MNEMONIC_CONTEXTS.items():
        owners = collections.defaultdict(list)
        for key in keys:
            for letter in mnemonics(table[key].translation) if key in table else ():
                owners[letter].append(key)
        for letter, claimants in owners.items():
            if len(claimants) > 1:
                yield f"{language}: {' and '.join(claimants)} share the letter {letter} on the {context}."


def punctuation_faults(language, table, english):
    for key in table.keys() & english.keys():
        text, original = table[key].translation, english[key].translation
        colon = COLONS.get(language, ":")
        if original.endswith(":") and not text.endswith(colon):
            yield f"{language}: {key} must end in “{colon}”."
        if ("…" in original) != ("…" in text):
            yield f"{language}: {key} must have an ellipsis as the English text, or none."
        if language == "fr" and re.search(r" [:;?!»]|« ", text.replace(LIST_OF_SIGNS, "")):
            yield f"fr: {key} has a space that breaks beside a sign."


def desktop_faults(root, languages):
    expected = (set(languages) | {ALSO_SERVED[language] for language in languages if language in ALSO_SERVED})
    expected.discard(SOURCE_LANGUAGE)
    for name, pattern in DESKTOP_TEXTS.items():
        path = root / name
        found = set(pattern.findall(path.read_text(encoding="utf-8"))) if path.exists() else expected
        for language in sorted(expected ^ found):
            yield f"{name}: {language} is {'missing' if language in expected else 'there without a table'}."


def usage_faults(used, keys):
    for key in used.keys() - keys:
        yield f"{used[key]}: {key} is used, and no table has it."
    for key in keys - used.keys():
        yield f"{SOURCE_LANGUAGE}: {key} is in the table, and nothing uses it."


def faults(root):
    messages = {TABLE_NAME.search(path.name)[1]: read_table(path)
                for path in (root / TABLES).glob("*.ts") if TABLE_NAME.search(path.name)}
    if SOURCE_LANGUAGE not in messages:
        yield f"There is no English table in {TABLES}."
        return
    tables = {language: {message.key: message for message in rows} for language, rows in messages.items()}
    for language in messages:
        yield from table_faults(language, messages[language])
        yield from comparison_faults(language, tables[language], tables[SOURCE_LANGUAGE])
        yield from mnemonic_faults(language, tables[language])
        yield from punctuation_faults(language, tables[language], tables[SOURCE_LANGUAGE])
    yield from desktop_faults(root, tables)
    yield from usage_faults(used_keys(root), tables[SOURCE_LANGUAGE].keys())


def main(arguments):
    if len(arguments) != 2:
        print(f"Usage: {arguments[0]} SOURCE_FOLDER", file=sys.stderr)
        return 2
    found = sorted(faults(pathlib.Path(arguments[1])))
    for fault in found:
        print(fault)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
