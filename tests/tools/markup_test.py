from tool import ToolTest, main

PAGE = (b"<html><head><meta content='text/html; charset=euc-kr'><title>A &amp; \xb0\xa1</title></head>"
        b"<!-- note --><body><p>one <a href='x.html'>two</a><p>three<img src=i.png></body>")


class Markup(ToolTest):
    def test_a_page_is_shown(self):
        self.write("page.html", PAGE)
        tree = self.zn("html", "page.html").text
        self.assertIn("  head\n    meta content=\"text/html; charset=euc-kr\"\n    title\n      A &amp; 가\n", tree)
        self.assertIn("  # note\n", tree)
        self.assertEqual(self.zn("html", "--text", "-", stdin=PAGE).text, "A & 가\none\ntwo\nthree\n")
        self.assertEqual(self.zn("html", "page.html", "--links").text, "x.html\ni.png\n")
        self.assertEqual(self.zn("html", "page.html", "--select", "A").text, "<a href=\"x.html\">two</a>\n")
        self.assertEqual(self.zn("html", "-", "--code-page", "1252", stdin=b"<b>\xe9").text, "b\n  é\n")

    def test_a_document_is_shown(self):
        document = "<a x='1'><b>&lt;é</b><c><![CDATA[<]]></c></a>"
        self.assertEqual(self.zn("xml", "-", stdin=document.encode()).text, "a x=\"1\"\n  b\n    <é\n  c\n    <\n")
        self.assertEqual(self.zn("xml", "-", "--text", stdin=document.encode()).text, "<é\n<\n")
        self.assertEqual(self.zn("xml", "-", "-s", "b", stdin=document.encode()).text, "<b>&lt;é</b>\n")

    def test_what_is_wrong_is_told(self):
        self.fails(1, "malformed", arguments=("xml", "-"), stdin=b"<a>")
        self.fails(1, "comment", arguments=("html", "-"), stdin=b"x<!--")
        self.fails(1, "no-such", arguments=("html", "no-such.html"))
        self.fails(2, arguments=("html", "-", "--text", "--links"))

    def test_deep_pages(self):
        self.assertEqual(self.zn("html", "-", "--text", stdin=b"<b>" * 100000 + b"x").text, "x\n")


if __name__ == "__main__":
    main()
