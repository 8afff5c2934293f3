// SPDX-License-Identifier: MIT
// The program that the precompiled headers are made with; every other test program uses them.
int main()
{
    return 0;
}
