@echo off
rem Registers the library for everyone on this machine; run it as an administrator.
set here=%~dp0
set system64=%windir%\System32
set system32=%windir%\SysWOW64
if not exist "%system32%\regsvr32.exe" set system32=%windir%\System32
"%system32%\regsvr32.exe" /s "%here%x86\QvRtLibOle.dll"
set result=%errorlevel%
if "%ProgramW6432%"=="" goto end
"%system64%\regsvr32.exe" /s "%here%x64\QvRtLibOle.dll"
if not "%errorlevel%"=="0" set result=%errorlevel%
:end
if not "%result%"=="0" echo QvRtLib: regsvr32 ended with %result%
exit /b %result%
