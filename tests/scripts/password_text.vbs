' PasswordCrypt, PasswordCryptEx and PasswordDecrypt, late bound.
Dim password, first, i, differs, list

password = "abc"
Check "PasswordCrypt succeeds", PasswordCrypt(password), False
Check "short text", password, "FF5EB9"
Check "PasswordDecrypt succeeds", PasswordDecrypt(password), False
Check "the password comes back", password, "abc"

password = ""
Check "an empty password", PasswordCrypt(password), False
Check "stays empty", password, ""
Check "an empty text", PasswordDecrypt(password), False
Check "stays empty too", password, ""

password = "segreto"
Check "PasswordCryptEx without a code succeeds", PasswordCryptEx(password), False
Check "three fields", Occurrences("-", password), CLng(2)
Check "a full text is restored", PasswordDecrypt(password), False
Check "to the password", password, "segreto"

password = "segreto"
PasswordCryptEx password, CLng(-1)
first = password
For i = 1 To 40
  password = "segreto"
  PasswordCryptEx password, -1
  If password <> first Then differs = True
  PasswordDecrypt password
  If password <> "segreto" Then Check "a text of a random code comes back", password, "segreto"
Next
Check "random codes give different texts", differs, True

password = "7" & Mid(first, 2)
If password = first Then password = "8" & Mid(first, 2)
Check "a changed digit is refused", PasswordDecrypt(password), True
Check "with the text cryptcode", Error_Description(), "cryptcode"
CheckRecord "and number 20000", 20000, "QvRtLibOle.KwRtLibModPasswordDecrypt"

' One digit of each field, and fields that are missing.
list = Array("GF5EB9-AE-B30AE94C218166C4BA", "FF5EB9-AE-GG", "-", "--", "FF5EB9-AE", "FF5EB9-", "FF5EB9--B30AE94C218166C4BA", _
    "0F5EB9-AE-B30AE94C218166C4BA", "FF5EB9-AF-B30AE94C218166C4BA", "FF5EB9-AE-B30AE94C218166C4BB", "FF5EB9-AE-A30AE94C218166C4BA", _
    "ff5eb9-AE-B30AE94C218166C4BA", "FF5EB9-ae-B30AE94C218166C4BA", "FF5EB9-AE-B30AE94C218166C4", "FF5EB9-AE-", "-FF5EB9-AE-B30AE94C218166C4BA")
For Each i In list
  password = i
  Check "refused: " & i, PasswordDecrypt(password), True
  Check "and left as it was", password, i
Next
Reset_Error
password = "FF5EB9-AE-b30ae94c218166c4ba"
Check "the check value's digits may be of either case", PasswordDecrypt(password), False
Check "the rest is read", password, "abc"
list = Array(0, 1, 9, 10, 99, 100, 255, 256, 4660, 32767)
For Each i In list
  password = "Rosso & Nero"
  If PasswordCryptEx(password, CLng(i)) Then Check "code " & i, True, False
  Check "code " & i & " scrambles", InStr(password, "-"), CLng(25)
  If PasswordDecrypt(password) Then Check "code " & i & " is read", True, False
  Check "code " & i & " comes back", password, "Rosso & Nero"
Next

password = "XY"
Check "digits that are none are refused", PasswordDecrypt(password), True
CheckRecord "with a type mismatch", 13, "QvRtLibOle.KwRtLibModPasswordDecrypt"
Check "and the text stays", password, "XY"

password = "abc"
Check "a code above 32767 is refused", PasswordCryptEx(password, CLng(32768)), True
CheckRecord "with an overflow", 6, "QvRtLibOle.KwRtLibModPasswordCryptEx"
Check "and the password is empty", password, ""
Finish
