#!/usr/bin/env bash
/libaux/build/tests/tests/terminal/powercut
