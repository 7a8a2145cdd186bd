package com.example;

import java.io.BufferedReader;
import java.io.InputStreamReader;

/** Writes the first line that it is sent, and ends. */
public final class Server {
    public static void main(String[] arguments) throws Exception {
        System.out.println(new BufferedReader(new InputStreamReader(System.in)).readLine());
    }
}
