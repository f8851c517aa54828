// Layout values given in twips (1/1440 inch), turned into pixels at the usual 96 dots per inch.
#pragma once

constexpr int twips(int t) {
    return t / 15;
}
