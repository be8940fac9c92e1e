from tool import ToolTest, main


class Message(ToolTest):
    def test_a_message_is_filled_in(self):
        cases = [
            (("83B04002",), "Fail to Open the local file."),
            (("0x84a60110", "10.0.0.7"), "Fail to connect to specified server: 10.0.0.7."),
            (("84A60110",), "Fail to connect to specified server: ."),
            (("--", "-1"), "Failed."),
            (("0", "left out"), "Succeeded."),
            (("101",), "Succeeded with warnings."),
            (("83B10001", "주문", "%n", "--language", "949"), "업무 서비스를 불러오지 못했습니다 [주문/%n]."),
            (("00000000", "--language", "932"), "成功しました。"),
            (("81A90117", "--language", "932"), "The listening port is not configured."),
        ]
        for arguments, text in cases:
            self.assertEqual(self.zn("message", *arguments).text, text + "\n", arguments)

    def test_the_locale_chooses_the_language(self):
        for locale, text in (("ko_KR.CP949", "성공했습니다."), ("C.UTF-8", "Succeeded.")):
            self.assertEqual(self.zn("message", "0", env={"LC_ALL": locale}).text, text + "\n", locale)

    def test_what_is_wrong_is_told(self):
        for code in ("12345678", "123456789", "0x1", "-5"):
            self.fails(2, "no such message", arguments=("message", "--", code))
        for code in ("", "x", "0x", "0x123456789", "4294967296"):
            self.fails(2, "no message code", arguments=("message", "--", code))
        self.fails(2, arguments=("message", "0", "--language", "1250"))

    def test_tables_are_listed(self):
        for language, count, first in (("1252", 324, "Succeeded."), ("949", 223, "성공했습니다."),
                                       ("932", 195, "成功しました。")):
            lines = self.zn("messages", "--language", language).text.splitlines()
            self.assertEqual(len(lines), count)
            self.assertEqual(lines[0], "00000000  " + first)
        self.assertEqual(len(self.zn("messages").text.splitlines()), 324)


if __name__ == "__main__":
    main()
