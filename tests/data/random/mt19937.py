#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Outputs of MT19937 seeded by arrays, from Python's own implementation of it.

random.seed(n) seeds by the array of the 32-bit digits of n, lowest first, getrandbits(32) is the
32-bit output and random() the 53-bit one. Usage: mt19937.py > mt19937.csv
"""

import random


def seed(key):
    random.seed(sum(word << (32 * place) for place, word in enumerate(key)))


def key_of(length):
    """Words that a test makes in the same way."""
    return [(2654435761 * (i + 1)) % 2**32 for i in range(length)]


print("output,key,place,value")
seed([0x123, 0x234, 0x345, 0x456])
for place in range(1000):
    print(f"int32,published,{place},{random.getrandbits(32)}")
for place in range(100):
    print(f"res53,published,{place},{random.random().hex()}")
for length in (1, 2, 623, 624, 625, 1300):
    seed(key_of(length))
    for place in range(5):
        print(f"int32,{length},{place},{random.getrandbits(32)}")
