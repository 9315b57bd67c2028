@echo off
"%~dp0verifier.exe"
pause
