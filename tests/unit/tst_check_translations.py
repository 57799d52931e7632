#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests of check_translations.py on small source trees with one fault each."""

import pathlib
import subprocess
import sys
import tempfile
import unittest
from xml.sax.saxutils import escape

CHECK = pathlib.Path(__file__).with_name("check_translations.py")
MESSAGE = ('<message id="{key}"><source>{source}</source><extracomment>{comment}</extracomment>'
           '<translation{state}>{text}</translation></message>')


class CheckTranslationsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.english = {"HELLO_TEXT": "Hello", "SPACE_FMT": "%@ of %@"}
        self.german = {"HELLO_TEXT": "Hallo", "SPACE_FMT": "%@ von %@"}
        self.write("app/main.cpp", 'show(localizedString("HELLO_TEXT"), localizedString("SPACE_FMT"));')

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def write_table(self, language, rows):
        body = "".join(
            MESSAGE.format(**{"source": escape(self.english.get(row["key"], "")), "comment": "Why.",
                              "state": "", **row, "text": escape(row["text"])})
            for row in rows)
        self.write(f"resources/translations/zorvex_{language}.ts",
                   f'<TS version="2.1" language="{language}"><context>{body}</context></TS>')

    def check(self, german_rows=None):
        self.write_table("en", [{"key": key, "text": text} for key, text in self.english.items()])
        if german_rows is None:
            german_rows = [{"key": key, "text": text} for key, text in self.german.items()]
        self.write_table("de", german_rows)
        return self.run_check()

    def run_check(self):
        result = subprocess.run([sys.executable, CHECK, self.root], capture_output=True, text=True, check=False)
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.returncode, 1 if result.stdout else 0)
        return result.stdout

    def set_both(self, key, english, german, use=True):
        self.english[key] = english
        self.german[key] = german
        if use:
            self.write(f"ui/{key}.cpp", f'localizedString("{key}")')

    def test_good_tables_pass(self):
        self.assertEqual(self.check(), "")

    def test_other_word_order_passes(self):
        self.german["SPACE_FMT"] = "von %2$@ sind %1$@ frei, 100%%"
        self.assertEqual(self.check(), "")

    def test_no_english_table(self):
        self.assertIn("no English table", self.run_check())

    def test_key_missing_in_one_language(self):
        del self.german["HELLO_TEXT"]
        self.assertEqual(self.check(), "de: HELLO_TEXT is missing.\n")

    def test_key_missing_in_english(self):
        self.german["MORE_TEXT"] = "Mehr"
        self.assertIn("de: MORE_TEXT is not in the English table.", self.check())

    def test_key_used_in_every_way(self):
        keys = ("CODE_TEXT", "ID_TEXT", "MARKED_TEXT", "FIRST_TEXT", "SECOND_TEXT", "INTERFACE_TEXT")
        for key in keys:
            self.set_both(key, "a", "b", use=False)
        self.write("ui/a.cpp", 'localizedString( "CODE_TEXT" ); qtTrId("ID_TEXT"); QT_TRID_NOOP("MARKED_TEXT");\n'
                               'localizedString(whole(disk) ? "FIRST_TEXT"\n : "SECOND_TEXT");')
        self.write("resources/a.ui", '<ui><string notr="false" id="INTERFACE_TEXT">x</string></ui>')
        self.assertEqual(self.check(), "")

    def test_key_used_and_in_no_table(self):
        self.write("ui/a.cpp", 'localizedString("LOST_TEXT")')
        self.write("ui/b.ui", '<ui><string id="GONE_TEXT">x</string></ui>')
        found = self.check()
        self.assertIn("ui/a.cpp: LOST_TEXT is used", found)
        self.assertIn("ui/b.ui: GONE_TEXT is used", found)

    def test_key_unused(self):
        self.set_both("IDLE_TEXT", "a", "b", use=False)
        self.write("ui/a.cpp", '// localizedString("IDLE_TEXT")\n/* qtTrId("IDLE_TEXT") */ f("IDLE_TEXT")')
        self.assertEqual(self.check(), "en: IDLE_TEXT is in the table, and nothing uses it.\n")

    def test_key_used_by_a_test_only_is_unused(self):
        self.set_both("IDLE_TEXT", "a", "b", use=False)
        self.write("tests/a.cpp", 'localizedString("IDLE_TEXT")')
        self.assertIn("IDLE_TEXT", self.check())

    def test_comment_signs_in_a_string_hide_nothing(self):
        self.write("ui/a.cpp", 'open("http://x", "/*"); localizedString("LOST_TEXT"); close("*/");')
        self.assertIn("LOST_TEXT is used", self.check())

    def test_placeholder_lost(self):
        self.german["SPACE_FMT"] = "%@ frei"
        self.assertIn("de: SPACE_FMT has other placeholders", self.check())

    def test_placeholder_of_another_argument(self):
        self.german["SPACE_FMT"] = "%1$@ von %3$@"
        self.assertIn("de: SPACE_FMT has other placeholders", self.check())

    def test_placeholder_escaped_by_accident(self):
        self.german["SPACE_FMT"] = "%@ von %%@"
        self.assertIn("de: SPACE_FMT has other placeholders", self.check())

    def test_placeholders_mixed(self):
        self.german["SPACE_FMT"] = "%@ von %2$@"
        self.assertIn("de: SPACE_FMT mixes", self.check())

    def test_stray_percent_sign(self):
        self.german["SPACE_FMT"] = "%@ von %@ (100 %)"
        self.assertIn("de: SPACE_FMT has a %", self.check())

    def test_mnemonics_collide_in_a_menu(self):
        self.set_both("CLOSE_MENU_ITEM_TITLE", "&Close", "&Schließen")
        self.set_both("QUIT_MENU_ITEM_TITLE", "&Quit", "Be&enden")
        self.assertEqual(self.check(), "")
        self.german["QUIT_MENU_ITEM_TITLE"] = "&schluss"
        self.assertEqual(
            self.check(), "de: CLOSE_MENU_ITEM_TITLE and QUIT_MENU_ITEM_TITLE share the letter s on the File menu.\n")

    def test_mnemonics_collide_between_menu_bar_and_page(self):
        self.set_both("FILE_MENU_TITLE", "&File", "&Datei")
        self.set_both("FORMAT_BUTTON_TITLE", "Fo&rmat", "Forma&d")
        self.assertIn("share the letter d on the Format page with EJECT_BUTTON_TITLE", self.check())

    def test_titles_of_one_button_may_share_a_letter(self):
        self.set_both("MOUNT_BUTTON_TITLE", "&Mount", "&Ein")
        self.set_both("UNMOUNT_BUTTON_TITLE", "Un&mount", "&Ende")
        self.assertEqual(self.check(), "")

    def test_mnemonic_missing_or_doubled(self):
        self.set_both("FILE_MENU_TITLE", "File", "&D&atei && mehr")
        found = self.check()
        self.assertIn("en: FILE_MENU_TITLE must mark one letter with &, and marks 0.", found)
        self.assertIn("de: FILE_MENU_TITLE must mark one letter with &, and marks 2.", found)

    def test_mnemonic_where_there_is_no_context(self):
        self.german["HELLO_TEXT"] = "&Hallo"
        self.assertIn("de: HELLO_TEXT marks a letter with &", self.check())

    def test_unfinished_empty_and_uncommented(self):
        found = self.check([{"key": "HELLO_TEXT", "text": "Hallo", "state": ' type="unfinished"'},
                            {"key": "SPACE_FMT", "text": " ", "comment": ""}])
        self.assertIn("de: HELLO_TEXT is not marked as finished.", found)
        self.assertIn("de: SPACE_FMT has no text.", found)
        self.assertIn("de: SPACE_FMT has no comment for translators.", found)

    def test_obsolete_text(self):
        self.assertIn("not marked as finished", self.check([
            {"key": "HELLO_TEXT", "text": "Hallo", "state": ' type="vanished"'},
            {"key": "SPACE_FMT", "text": "%@ von %@"}]))

    def test_key_twice(self):
        self.assertIn("de: HELLO_TEXT is there 2 times.", self.check([
            {"key": "HELLO_TEXT", "text": "Hallo"}, {"key": "HELLO_TEXT", "text": "Hallo"},
            {"key": "SPACE_FMT", "text": "%@ von %@"}]))

    def test_caption_without_its_colon(self):
        self.set_both("NAME_CAPTION", "Name:", "Name")
        self.assertIn("de: NAME_CAPTION must end in “:”.", self.check())

    def test_ellipsis_is_lost(self):
        self.set_both("ACTIVITY_TEXT", "Checking…", "Prüfen")
        self.assertIn("de: ACTIVITY_TEXT must have an ellipsis", self.check())

    def test_french_space_that_breaks(self):
        self.check()
        for text, is_fault in [("Bonjour\u00a0:", False), ("Bonjour :", True), ("Bonjour\u202f?", False), ("« Bonjour", True)]:
            self.write_table("fr", [{"key": "HELLO_TEXT", "text": text}, {"key": "SPACE_FMT", "text": "%@ de %@"}])
            self.assertEqual("fr: HELLO_TEXT has a space that breaks" in self.run_check(), is_fault, text)

    def test_languages_of_the_desktop_entry(self):
        name = "resources/desktop/org.zorvex.DiskManager.desktop"
        self.write(name, "Comment=Disks\nComment[de]=Platten\n")
        self.assertEqual(self.check(), "")
        self.write(name, "Comment=Disks\nComment[nl]=Schijven\n")
        found = self.check()
        self.assertIn(f"{name}: de is missing.", found)
        self.assertIn(f"{name}: nl is there without a table.", found)

    def test_english_text_has_changed(self):
        self.assertIn("de: HELLO_TEXT was translated from another English text than “Hello”.", self.check([
            {"key": "HELLO_TEXT", "text": "Hallo", "source": "Good day"},
            {"key": "SPACE_FMT", "text": "%@ von %@"}]))


if __name__ == "__main__":
    unittest.main()
