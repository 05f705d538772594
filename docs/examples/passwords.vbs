' == PasswordCryptEx, PasswordDecrypt
' A password that nobody reads at a glance, for a settings file. Everybody can restore it.
Dim text
text = "segreto"
Show PasswordCryptEx(text, 77)     '-> False
Show text                          '-> 3E282A3F283922-A90B-B30BEF4B2E8667C7BE1B
Show PasswordDecrypt(text)         '-> False
Show text                          '-> segreto
text = "00-11-22"
Show PasswordDecrypt(text)         '-> True
Show Error_Description()           '-> cryptcode

' == PasswordCrypt
' Without a check value: a text that was changed is not noticed.
Dim text
text = "segreto"
Show PasswordCrypt(text)           '-> False
Show text                          '-> ED59BD0A72C13C
Show PasswordDecrypt(text)         '-> False
Show text                          '-> segreto
